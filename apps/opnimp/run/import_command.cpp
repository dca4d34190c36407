#include "apps/opnimp/run/import_command.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>
#include <new>
#include <sstream>
#include <utility>
#include <vector>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/journal/repetition.h"
#include "apps/opnimp/report/metrics.h"
#include "apps/opnimp/report/report_json.h"
#include "apps/opnimp/report/report_text.h"
#include "apps/opnimp/run/database_choice.h"
#include "apps/opnimp/run/dry_run.h"
#include "apps/opnimp/run/lock_holders.h"
#include "apps/opnimp/run/lock_watch.h"
#include "apps/opnimp/run/long_values.h"
#include "apps/opnimp/run/preview_connection.h"
#include "apps/opnimp/run/profiles.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/single_import.h"
#include "apps/opnimp/run/watched_run.h"

namespace velk {

namespace {

class ImportCommand : public std::enable_shared_from_this<ImportCommand> {
 public:
  ImportCommand(Arguments arguments, const Streams& streams, const Surroundings& surroundings)
      : arguments_(std::move(arguments)),
        call_{Events(streams, arguments_.jsonLog, arguments_.verbose), surroundings,
              arguments_.files.size() > 1} {}

  /// Answers what came of it, the profile included, which is saved behind what is shown: an import
  /// without that option would not end otherwise for it.
  ExitStatus foresee(const Foresight& foresight) {
    call_.viewed = foresight.viewed;
    call_.folder = ".";  // any does, because the error log stays in memory
    call_.database = previewConnection();
    readFiles();
    if (foresight.catalogue != nullptr) findLong(*foresight.catalogue);
    drive();
    foresight.ended(result());
    saveProfile(files_.front().result(), call_.surroundings, call_.events);
    return result().status();
  }

  /// Writes the file of --metrics, whatever comes of the run.
  FilesResult runMeasured() {
    try {
      FilesResult call = run();
      writeMetrics(call.status());
      return call;
    } catch (const UsageError&) {
      writeMetrics(ExitStatus::Usage);
      throw;
    } catch (const CannotOpen&) {
      writeMetrics(ExitStatus::CannotOpen);
      throw;
    }
  }

 private:
  // Memory that runs out before the first record was posted is the files' fault; later the account
  // is drawn up once more, with what has been freed since.
  FilesResult run() {
    try {
      prepare();
      driveWatched();
    } catch (const std::bad_alloc&) {
      if (!hasBegun()) throw CannotOpen(tooLarge(arguments_.files[current_]));
      evaluate();
    } catch (const CannotOpen& failure) {
      if (hasBegun()) files_[current_].endInJournal(failure.what());
      throw;
    }
    call_.events.progress().erase();
    saveProfile(files_.front().result(), call_.surroundings, call_.events);
    // Last of all: it tells what became of the other files.
    for (SingleImport& file : files_) {
      ImportOutputs::writeReport(file.result());
      file.tellOfEnd();
    }
    return result();
  }

  /// What became of the call as a whole; nothing if it ended before it was known that the file may
  /// be written.
  void writeMetrics(ExitStatus status) {
    if (!metrics_) return;
    try {
      metrics_->write(metricsText(result(), status));
      files_.back().result().metricsFile = *arguments_.metrics;
    } catch (const CannotOpen& failure) {
      call_.events.notice(failure.what() + std::string("."));
    }
  }

  void readFiles() {
    checkAccepted(arguments_.accept);
    requireDistinct(arguments_.files);
    for (const Arguments& each : eachFile(arguments_)) {
      current_ = files_.size();
      files_.emplace_back(each, call_);
    }
    current_ = 0;
  }

  /// Everything that can fail before anything is posted.
  void prepare() {
    call_.folder = applicationFolder(arguments_.appFolder);
    readFiles();
    std::vector<DatabaseChoice> hosts = chooseDatabases(arguments_, call_.surroundings);
    const std::string journal = chooseJournal(arguments_.journal, call_.surroundings);
    // Only an embedded one, which is by itself, has a file.
    checkOutputs(journal, hosts.front());
    commandTimeoutSeconds_ = hosts.front().options.commandTimeoutSeconds;
    call_.hosts.emplace(std::move(hosts), call_.surroundings, call_.gate);
    for (SingleImport& file : files_) file.prepare(call_.hosts->shown());
    if (arguments_.metrics) metrics_.emplace(*arguments_.metrics);
    call_.journal.emplace(journal, arguments_, call_.surroundings, call_.events);
  }

  /// What is written must not take the place of what it comes from, nor of each other.
  void checkOutputs(const std::string& journal, const DatabaseChoice& database) const {
    std::vector<Writes> writes = profileWritten(arguments_, call_.surroundings);
    writes.push_back({"--journal", journal, {journal}});
    if (const auto& metrics = arguments_.metrics) {
      writes.push_back({"--metrics", *metrics, {*metrics}});
    }
    for (const SingleImport& file : files_) {
      std::ranges::move(outputsOf(file.result().arguments), std::back_inserter(writes));
    }
    checkWrites(writes, database, call_.folder, arguments_.files);
  }

  /// The run keeps this object for as long as it lives: for ever, if the database never answers.
  void driveWatched() {
    LockWatch locks(
        call_.gate, [this] { return lockQuestion(); },
        [this](const LockHolders& holders) { tellWait(holders); });
    const WatchedRun run{[self = shared_from_this()] { self->drive(); },
                         [this] { return whyEnd(); },
                         [self = shared_from_this()] { self->call_.hosts->cancel(); }, call_.gate,
                         [&locks] { locks.look(); }};
    if (runWatched(run)) return;
    files_[current_].giveUp(whyEnd());
    evaluate();
  }

  /// Drivers trust the server to keep the time-out, or the network to tell that it is gone.
  std::string whyEnd() {
    const Surroundings& surroundings = call_.surroundings;
    if (surroundings.interrupted && surroundings.interrupted()) return "it was interrupted";
    const std::chrono::seconds limit(commandTimeoutSeconds_);
    if (limit.count() <= 0 || !call_.gate.isOverdue(limit + surroundings.answerPatience)) return {};
    return "a call had no answer within its time-out of " + std::to_string(limit.count()) +
           " s, and nothing ended it";
  }

  /// What the run itself cannot ask while it waits.
  LockQuestion lockQuestion() const {
    return lockHoldersQuestion(call_.hosts->current(), call_.hosts->session(),
                               call_.surroundings.program);
  }

  void tellWait(const LockHolders& holders) {
    ImportResult& result = files_[current_].result();
    if (!holders.names.empty()) ++result.lockWaits;
    call_.events.waits(result, files_[current_].recordInHand(), holders);
  }

  void drive() {
    post();
    evaluate();
  }

  void post() {
    std::optional<DryRun> dryRun;
    try {
      // Within the run that is watched, since a server may not answer, and a file be locked.
      if (!call_.database) {
        call_.database = call_.hosts->open();
        if (mayLookAhead()) call_.openBeside();
      }
      if (call_.journal) identify();
      if (arguments_.resume) resume();
      if (arguments_.dryRun) {
        call_.gate.pass([&] { dryRun.emplace(*call_.database); });
      }
      if (call_.hosts) {
        Catalogue catalogue(*call_.database, call_.gate);
        findLong(catalogue);
      }
    } catch (const RunEnded& ended) {
      return files_.front().breakOff(ended.why);
    }
    openFiles();
    if (std::ranges::none_of(files_, hasEnded)) importFiles();
  }

  /// By an import that is foreseen: the screens alone know what they pass.
  void findLong(Catalogue& catalogue) {
    if (!catalogue.tellsLengths(*arguments_.kind)) return;
    Arguments all = arguments_;
    all.dryRun = true;
    all.resume = false;
    all.accept = {"all"};
    all.savedProfile.reset();
    all.metrics.reset();
    std::ostringstream unheard;
    const Streams streams{unheard, unheard, false};
    const auto ended = [&](const FilesResult& foreseen) {
      for (const ImportResult* file : foreseen.files()) {
        call_.longValues[file->arguments.file] = findLongValues(*file, catalogue);
      }
    };
    ImportCommand(all, streams, call_.surroundings)
        .foresee({[](const std::string&, const ImportScreen&) {}, ended});
  }

  /// Within a transaction only its own connection sees what is posted. An embedded database answers
  /// without a message.
  bool mayLookAhead() const {
    return LookAhead::isFor(*arguments_.kind) && call_.hosts->current().path.empty() &&
           !arguments_.oneByOne && !arguments_.dryRun && !arguments_.allOrNothing;
  }

  /// A database of which it is not known which one it is could take the same records twice.
  void identify() {
    const std::string& shown = call_.hosts->shown();
    for (SingleImport& file : files_) file.result().database = shown;
    const auto ask = [&] { call_.journal->identify(*call_.database, shown); };
    trapErrors([&] { call_.gate.pass(ask); },
               [&](const RuntimeError& error) {
                 endIfHopeless(error, *call_.database, call_.gate);
                 throw CannotOpen("the database " + shown + " could not be told from others: " +
                                  std::string(withoutEnd(error.description())));
               });
    if (call_.hosts->areSeveral()) {
      call_.hosts->requireSame(call_.journal->databaseId(), call_.events);
    }
  }

  void resume() {
    for (SingleImport& file : files_) file.resume(call_.journal->resumption(file.result()));
    const bool several = call_.hasSeveralFiles;
    const auto isKnown = [](const SingleImport& file) { return file.result().resumes != 0; };
    if (std::ranges::none_of(files_, isKnown)) {
      throw UsageError("--resume: the journal has no run of " +
                       std::string(several ? "these files, as they are" : "this file, as it is") +
                       " now, in this database; `opnimp runs` lists those that it has");
    }
    if (!std::ranges::all_of(files_, isPassedOver)) return;
    const ImportResult& first = files_.front().result();
    const std::string number = std::to_string(first.resumes);
    if (several) {
      throw UsageError("--resume: earlier runs, such as run " + number +
                       ", reached all records of these files" + leftOutText() +
                       ", or may have; there is nothing to go on with. `opnimp runs` lists them");
    }
    throw UsageError("--resume: run " + number + " reached all records of the file" +
                     fromText(first) +
                     ", or may have; there is nothing to go on with. `opnimp rejects " + number +
                     " FILE` writes those that it refused or left in doubt");
  }

  /// " (a.csv from line 4 on)".
  std::string leftOutText() const {
    std::string text;
    for (const SingleImport& file : files_) {
      const std::string from = fromText(file.result());
      if (from.empty()) continue;
      text.append(text.empty() ? " (" : ", ").append(file.result().arguments.file).append(from);
    }
    return text.empty() ? text : text + ")";
  }

  static bool isPassedOver(const SingleImport& file) { return file.result().passedOver; }
  static bool hasEnded(const SingleImport& file) { return file.hasEnded(); }

  /// All files are looked at before anything of the first one is posted. One that breaks off ends
  /// the call: nobody knows what those behind it would have been refused for.
  void openFiles() {
    std::size_t total = 0;
    for (current_ = 0; current_ < files_.size(); ++current_) {
      SingleImport& file = files_[current_];
      if (isPassedOver(file)) continue;
      total += file.result().input->count();
      file.open();
      if (!file.result().brokeOff.empty()) return;
    }
    current_ = 0;
    call_.events.progress().setTotal(total);
    refuseRepeated();
    const auto refused = std::ranges::find_if(
        files_, [](const SingleImport& file) { return file.result().refused(); });
    if (refused == files_.end()) return;
    for (SingleImport& file : files_) {
      if (file.result().refused() || isPassedOver(file)) continue;
      file.refuseWith(refused->result().arguments.file);
    }
  }

  /// A record of an earlier file counts as one that an earlier run posted.
  void refuseRepeated() {
    if (!call_.hasSeveralFiles || arguments_.again || arguments_.kind->opening == nullptr) return;
    FilesOfCall known;
    for (SingleImport& file : files_) {
      if (file.hasEnded() || isPassedOver(file)) continue;
      const ImportResult& result = file.result();
      const std::string refusal =
          known.add(result.arguments.file, file.recordsToPost(), result.input->placeWord());
      if (refusal.empty()) continue;
      file.refuse(refusal);
      file.result().repeats = true;
    }
  }

  /// The files behind one that broke off are left: what ended it may end them, too.
  void importFiles() {
    std::size_t before = 0;
    for (current_ = 0; current_ < files_.size(); ++current_) {
      SingleImport& file = files_[current_];
      if (isPassedOver(file)) continue;
      call_.events.progress().setBefore(before);
      before += file.result().input->count();
      import(file);
      if (current_ + 1 == files_.size()) return;
      file.evaluate();
      if (file.result().status() >= ExitStatus::Refused) return;
    }
  }

  /// What cannot be opened ends the call only as long as nothing was posted.
  void import(SingleImport& file) {
    const bool first = !hasBegun();
    try {
      file.import();
    } catch (const CannotOpen& failure) {
      if (first) throw;
      file.breakOff(failure.what());
    }
  }

  bool hasBegun() const {
    return std::ranges::any_of(files_, [](const SingleImport& file) { return file.began(); });
  }

  /// Once more for those that it did not come to, if the database does not answer here either.
  void evaluate() {
    for (SingleImport& file : files_) {
      if (file.began() || file.hasEnded() || isPassedOver(file)) continue;
      file.breakOff("it was not begun, since the import ended at " +
                    files_[current_].result().arguments.file);
    }
    for (std::size_t i = 0; i < files_.size(); ++i) {
      if (files_[i].isEvaluated()) continue;
      current_ = i;
      files_[i].evaluate();
    }
  }

  FilesResult result() const {
    std::vector<const ImportResult*> results;
    for (const SingleImport& file : files_) results.push_back(&file.result());
    return FilesResult(std::move(results));
  }

  const Arguments arguments_;
  int commandTimeoutSeconds_ = 0;
  ImportCall call_;
  std::optional<MetricsFile> metrics_;
  std::deque<SingleImport> files_;  // which stay where they are
  std::size_t current_ = 0;         // the one that is being worked on
};

}  // namespace

ExitStatus foreseeImport(const Arguments& arguments, const Streams& streams,
                         const Surroundings& surroundings, const Foresight& foresight) {
  Arguments dry = arguments;
  dry.dryRun = true;
  return ImportCommand(dry, streams, surroundings).foresee(foresight);
}

ExitStatus runImport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings) {
  const auto command = std::make_shared<ImportCommand>(arguments, streams, surroundings);
  const FilesResult call = command->runMeasured();
  if (call.files().size() > 1) {
    (arguments.json ? writeFilesJson : writeFilesText)(call, streams.out);
    return call.status();
  }
  const ImportResult& result = *call.files().front();
  (arguments.json ? writeImportJson : writeImportText)(result, streams.out);
  return result.status();
}

}  // namespace velk
