#include "apps/opnimp/run/import_command.h"

#include <algorithm>
#include <memory>
#include <new>
#include <numeric>
#include <optional>
#include <stdexcept>

#include "apps/opnimp/audit/recording_connection.h"
#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/cli/progress.h"
#include "apps/opnimp/records/later_records.h"
#include "apps/opnimp/report/import_page.h"
#include "apps/opnimp/report/reject_files.h"
#include "apps/opnimp/report/report_file.h"
#include "apps/opnimp/report/report_json.h"
#include "apps/opnimp/report/report_text.h"
#include "apps/opnimp/run/database_choice.h"
#include "apps/opnimp/run/ds_types.h"
#include "apps/opnimp/run/import_journal.h"
#include "apps/opnimp/run/refusals.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_mapping.h"
#include "apps/opnimp/run/screen_session.h"
#include "apps/opnimp/run/shadow_file.h"
#include "apps/opnimp/run/watched_run.h"
#include "apps/opnimp/run/whole_run.h"
#include "apps/opnimp/warnings/find_warnings.h"
#include "base/errors.h"

namespace velk {

namespace {

/// A transaction that is always taken back.
// Procedures that post are not run in a dry run. Checks and queries are: should one of them change
// something, this takes it back.
class DryRun {
 public:
  explicit DryRun(const OpenDatabase& database) : database_(database) {
    try {
      database_.begin();
    } catch (const RuntimeError& error) {
      throw CannotOpen("the database takes no dry run: " + error.description());
    }
  }
  DryRun(const DryRun&) = delete;
  DryRun& operator=(const DryRun&) = delete;
  ~DryRun() {
    try {
      database_.takeBack();
    } catch (const RuntimeError&) {
      // Closing the connection takes it back as well.
    }
  }

 private:
  const OpenDatabase& database_;
};

class ImportCommand : public std::enable_shared_from_this<ImportCommand> {
 public:
  ImportCommand(const Arguments& arguments, const Streams& streams,
                const Surroundings& surroundings)
      : streams_(streams),
        surroundings_(surroundings),
        progress_(streams.err, streams.errIsTerminal),
        recorder_(arguments.dryRun ? Recorder::Mode::DryRun : Recorder::Mode::Post),
        report_(arguments.dryRun) {
    result_.arguments = arguments;
  }

  void foresee(const Foresight& foresight) {
    foresight_ = &foresight;
    folder_ = ".";  // any does, because the error log stays in memory
    database_ = {foresight.connection, [] {}, [] {}};
    checkAccepted(arguments().accept);
    result_.input = readInput(arguments());
    drive();
    evaluate();
    foresight.ended(result_);
  }

  // Memory that runs out before the first record was posted is the file's fault; later it is not
  // known what was posted, and the program ends with that word.
  const ImportResult& run() {
    try {
      prepare();
      driveWatched();
    } catch (const std::bad_alloc&) {
      if (began_) throw;
      throw CannotOpen(tooLarge(arguments().file));
    } catch (const CannotOpen& failure) {
      if (began_) endInJournal(failure.what());
      throw;
    }
    progress_.erase();
    evaluate();
    writeReport();
    return result_;
  }

 private:
  const Arguments& arguments() const { return result_.arguments; }
  const ImportKind& kind() const { return *result_.arguments.kind; }

  /// Everything that can fail before anything is posted.
  void prepare() {
    checkAccepted(arguments().accept);
    folder_ = applicationFolder(arguments().appFolder);
    result_.input = readInput(arguments());
    DatabaseChoice choice = chooseDatabase(arguments().database, surroundings_);
    if (arguments().waitSeconds) choice.options.commandTimeoutSeconds = *arguments().waitSeconds;
    result_.database = choice.shown;
    prepareOutputs(choice);
    result_.user = surroundings_.user();
    result_.folder = applicationFolder({});
    result_.began = surroundings_.clock();
    database_ = openDatabase(choice, surroundings_);
    // Before a record begins, so that no record is cut in two.
    report_.onRecord = [this](std::size_t record) {
      endIfInterrupted();
      progress_.show(record);
    };
  }

  /// What is written must not take the place of what it comes from, nor of each other.
  void prepareOutputs(const DatabaseChoice& database) {
    const std::string journal = chooseJournal(arguments().journal, surroundings_);
    const std::optional<std::string>& rejects = arguments().rejects;
    const std::optional<std::string>& report = arguments().report;
    std::vector<Writes> writes{{"--journal", journal, {journal}}};
    if (rejects) {
      writes.push_back({"--rejects", *rejects, RejectFiles::touched(*rejects, kind().format)});
    }
    if (report) writes.push_back({"--report", *report, {*report}});
    checkWrites(writes, database, folder_, arguments().file);
    // Tried before the run, because after it what they are for would have no place to go.
    if (rejects) rejects_.emplace(*rejects, kind().format, arguments().dryRun);
    if (report) checkReportFile(*report);
    journal_.emplace(journal, arguments(), surroundings_, streams_.err);
  }

  /// Leaves out the records that the run reached which is to be resumed: the screen views the
  /// others only.
  void takeUp() {
    const Resumption resumption = journal_->resumption(result_);
    if (!resumption.doubtful.empty() && !rejects_) {
      throw UsageError("run " + std::to_string(resumption.run->number) + " left " +
                       counted(resumption.doubtful.size(), "record", "records") +
                       " in doubt: name a file with --rejects FILE; FILE.check.csv takes them");
    }
    result_.resumes = resumption.run->number;
    result_.setApart = resumption.doubtful;
    result_.refusedBefore = resumption.refused;
    if (resumption.next == 0) return;
    result_.input = std::make_unique<LaterRecords>(std::move(result_.input), resumption.next);
  }

  /// The run keeps this object for as long as it lives: for ever, if the database never answers.
  void driveWatched() {
    const WatchedRun run{[self = shared_from_this()] { self->drive(); }, surroundings_.interrupted,
                         database_.cancel, recorder_.gate()};
    if (!runWatched(run)) {
      result_.brokeOff = "it was interrupted, and the database did not answer any more";
      if (arguments().allOrNothing) recorder_.settle(Changes::NotKnown);
    }
  }

  void drive() {
    // Declared first, so that the screen is gone when the transaction is taken back.
    std::optional<DryRun> dryRun;
    std::optional<WholeRun> whole;
    try {
      if (journal_) identify();
      if (arguments().resume) takeUp();
      progress_.setTotal(result_.input->count());
      RunGate& gate = recorder_.gate();
      if (arguments().dryRun) {
        gate.pass([&] { dryRun.emplace(database_); });
      } else if (arguments().allOrNothing) {
        gate.pass([&] { whole.emplace(database_, recorder_); });
      }
      driveScreens();
    } catch (const Refused& refused) {
      // What earlier screens posted is posted.
      (report_.begun() == 0 ? result_.refusal : result_.brokeOff) = refused.what();
    } catch (const RunEnded& ended) {
      result_.brokeOff = ended.why;
    }
    if (whole) settle(*whole);
    tellOfLog();
    // A run that was refused early has no warnings yet, although they may explain the refusal.
    if (!began_ && result_.warnings.empty()) findWarningsNow();
  }

  /// A database of which it is not known which one it is could take the same records twice.
  void identify() {
    const auto ask = [this] { journal_->identify(result_, database_); };
    trapErrors([&] { recorder_.gate().pass(ask); },
               [this](const RuntimeError& error) {
                 recorder_.endIfHopeless(error, *database_.connection);
                 throw CannotOpen("the database " + result_.database +
                                  " could not be told from others: " + error.description());
               });
  }

  void driveScreens() {
    std::size_t first = 0;
    do first = driveScreen(first);
    while (result_.brokeOff.empty() && !wasRefused() && first < result_.input->count());
  }

  /// Imports as many records from `first` on as a screen takes, and answers which is the next.
  std::size_t driveScreen(std::size_t first) {
    const std::size_t end =
        first + std::min(result_.input->count() - first, kind().largestRecordCount);
    std::optional<ShadowFile> part = partOf(first, end);
    ScreenSession session(recorder_, {folder_, surroundings_.clock, messages(), !arguments().dryRun,
                                      part ? &*part : nullptr});
    result_.errorLog = session.errorLogPath();
    recorder_.beginPart(first);
    report_.beginPart(first);
    ImportScreen& screen = session.open(kind(), recorded(recorder_, database_.connection));
    screen.run().setRecordsBefore(first);
    view(session, screen, first == 0);
    import(session, screen, first, end);
    return end;
  }

  /// What the screen is to find in the file; empty for all that the file itself holds, so that the
  /// runner's own reading is checked against the screen's.
  std::optional<ShadowFile> partOf(std::size_t first, std::size_t end) const {
    const bool isWhole = end - first == result_.input->count() && asPart(*result_.input) == nullptr;
    if (isWhole) return {};
    std::vector<std::size_t> records(end - first);
    std::iota(records.begin(), records.end(), first);
    std::optional<ShadowFile> part(arguments().file);
    result_.input->write(*part, arguments().file, records);
    return part;
  }

  /// Of a foreseen import only what the screen says of the file is shown.
  MessageHandler messages() {
    return [this, show = messagesTo(streams_.err, progress_)](const Message& message) {
      if (foresight_ == nullptr || !began_) show(message);
    };
  }

  /// A preview shows the first screen.
  void view(ScreenSession& session, const ImportScreen& screen, bool isFirst) {
    const bool isForeseen = foresight_ != nullptr && isFirst;
    try {
      viewAndMap(session, arguments(), *result_.input, report_);
    } catch (const Refused&) {
      if (isForeseen) foresight_->viewed(screen);
      throw;
    }
    if (isForeseen) foresight_->viewed(screen);
  }

  /// The screen's messages may name the log, which a dry run does not write.
  void tellOfLog() {
    if (!arguments().dryRun || foresight_ != nullptr) return;
    if (recorder_.lines().empty() || recorder_.shown().empty()) return;
    progress_.erase();
    streams_.err << "opnimp: a dry run writes no error log; the report has what would be in it.\n";
  }

  /// Records from `first` to before `end`.
  void import(ScreenSession& session, const ImportScreen& screen, std::size_t first,
              std::size_t end) {
    // Read now, because the import empties the screen.
    viewedRecords_ += screen.RecordCount();
    if (end == result_.input->count()) screenRecords_ = viewedRecords_;
    if (first == 0) prepareRun(readMapping(screen), end);
    endIfInterrupted();
    if (journal_ && first == 0) {
      journal_->begin(result_, report_, recorder_);
    }
    began_ = true;
    // What the screen said of View and of --map is no answer to Import.
    report_.beginStep();
    const EventResult event = session.import();
    requireCompany();
    // The error that stopped the run explains more than the state in which the screen was left.
    if (!report_.stop().empty()) {
      result_.brokeOff = report_.stop();
    } else if (event != EventResult::Handled) {
      result_.brokeOff = "the screen did not take the Import button";
    } else if (!report_.ended() && !wasRefused()) {
      const auto& refusal = report_.refusal();
      result_.brokeOff = refusal ? refusal->text : "the import did not say how it ended";
    }
  }

  /// All that can be known of the file's records before the first screen imports, with `end` as its
  /// last one.
  void prepareRun(std::vector<FieldMapping> mapping, std::size_t end) {
    result_.mapping = std::move(mapping);
    findWarningsNow();
    requireRecords();
    requireAccepted();
    // Each screen looks at its own records only, when those before are posted.
    if (end < result_.input->count()) requireValues();
  }

  void requireValues() const {
    const std::size_t width = mappedWidth(result_.mapping);
    for (std::size_t record = 0; record < result_.input->count(); ++record) {
      const auto fields = result_.input->fields(record, width);
      for (const std::size_t field : kind().mandatory) {
        if (!result_.mapping.at(field).column) continue;
        if (!mappedCell(fields, result_.mapping, field).empty()) continue;
        throw Refused(valueMissingText(result_.mapping.at(field).field, *result_.input, record));
      }
    }
  }

  /// A database without the tables that an import asks before its first record is no company's.
  void requireCompany() const {
    const auto& stop = report_.stopError();
    const bool posted =
        report_.begun() > 0 ||
        std::ranges::count(recorder_.calls(), CallKind::Procedure, &RecordedCall::kind) > 0;
    if (!stop || posted || !isOfSchema(*stop)) return;
    throw CannotOpen("the database " + result_.database + " is none of this application: " +
                     stop->description() + "; nothing was imported. Choose another --database");
  }

  static bool isOfSchema(const RuntimeError& error) {
    return error.is(ErrorNumber::NoSuchTable) || error.is(ErrorNumber::CommandErrors);
  }

  void settle(WholeRun& whole) {
    bool keep = false;
    if (result_.brokeOff.empty() && !result_.refused() && !wasRefused()) {
      drawUp();
      keep = result_.account.addsUp() &&
             std::ranges::none_of(result_.traces.records, [](const RecordTrace& trace) {
               return isRefused(trace.outcome) || isDoubtful(trace.outcome) ||
                      trace.outcome == Outcome::NotReached;
             });
    }
    const std::string failure = whole.settle(keep);
    if (result_.brokeOff.empty()) result_.brokeOff = failure;
  }

  /// The import's word that nothing was posted, as long as nothing seen speaks against it.
  bool wasRefused() const {
    return report_.refusal() && report_.begun() == 0 &&
           std::ranges::count(recorder_.calls(), CallKind::Procedure, &RecordedCall::kind) == 0;
  }

  /// With no record to look at, the screen imports a file that lacks mandatory columns.
  void requireRecords() const {
    const std::string unmapped = unmappedFields(result_.mapping, kind().mandatory);
    if (result_.input->count() > 0 || unmapped.empty()) return;
    const std::string fault = result_.input->refusal(kind());
    throw Refused(fault.empty() ? "the file has no records, and " + unmappedText(unmapped) : fault);
  }

  /// A file that the screen itself refuses is left to it: it says what has to be mended first.
  void requireAccepted() const {
    const bool refused = !unmappedFields(result_.mapping, kind().mandatory).empty() ||
                         !result_.input->refusal(kind()).empty();
    if (refused) return;
    const std::string misread = misreadingsText(result_.warnings, arguments());
    if (!misread.empty()) throw Refused(misread);
  }

  void endIfInterrupted() const {
    if (surroundings_.interrupted && surroundings_.interrupted()) {
      throw RunEnded{"it was interrupted"};
    }
  }

  void findWarningsNow() {
    result_.warnings = findWarnings(*result_.input, kind(), result_.mapping,
                                    civilFromDate(surroundings_.clock()).year);
  }

  void endInJournal(std::string_view why) {
    result_.brokeOff = why;
    result_.ended = surroundings_.clock();
    drawUp();
    endJournal();
  }

  void endJournal() {
    if (!journal_) return;
    journal_->end(result_, {report_.ended(), screenRecords_, recorder_.changes()});
  }

  void evaluate() {
    if (wasRefused() && !result_.refused()) {
      result_.refusal = runRefusalText(*report_.refusal(), *result_.input, result_.mapping, kind());
    }
    drawUp();
    if (!result_.refused()) {
      findAllowedDsTypes();
      writeRejects();
    }
    result_.ended = surroundings_.clock();
    endJournal();
  }

  void drawUp() {
    // Of a refused run, too: the report lists the log lines of the run as a whole.
    result_.traces = traceRecords(report_, recorder_, result_.warnings, result_.input->count());
    if (result_.refused()) return;
    result_.account = drawUpAccount(
        {kind(), *result_.input, result_.mapping, result_.traces, screenRecords_, report_.ended()});
  }

  /// So that the user can correct the salesmen who were refused.
  void findAllowedDsTypes() {
    const bool rejected = std::ranges::any_of(result_.traces.records, [](const RecordTrace& trace) {
      return trace.outcome == Outcome::Rejected;
    });
    // After a run that broke off the database may not answer.
    if (kind().type != MasterType::Salesman || !rejected || !result_.brokeOff.empty()) return;
    // Not on the recorded connection, since this look-up is no part of the run.
    result_.allowedDsTypes = allowedDsTypes(*database_.connection);
  }

  void writeRejects() {
    if (!rejects_) return;
    // One that fails ends nothing: the run is over already, and its report must appear in any case.
    RejectFiles::Written written =
        rejects_->write(*result_.input, result_.traces, result_.setApart);
    result_.rejectFiles = std::move(written.paths);
    result_.rejectsError = std::move(written.failure);
  }

  /// Last of all: it tells what became of the other files.
  void writeReport() {
    if (!arguments().report) return;
    try {
      writeReportFile(*arguments().report, htmlPage(importPage(result_)));
      result_.reportFile = *arguments().report;
    } catch (const std::runtime_error& error) {
      result_.reportError = error.what();
    } catch (const std::bad_alloc&) {
      result_.reportError = "the memory does not hold the report of this file";
    }
  }

  const Streams& streams_;
  const Surroundings& surroundings_;
  ImportResult result_;
  std::string folder_;
  std::optional<RejectFiles> rejects_;
  std::optional<ImportJournal> journal_;
  OpenDatabase database_;
  Progress progress_;
  Recorder recorder_;
  ImportReport report_;
  long long viewedRecords_ = 0;             ///< as the screens counted so far
  std::optional<long long> screenRecords_;  ///< as they counted when all had viewed theirs
  const Foresight* foresight_ = nullptr;    ///< of a preview
  bool began_ = false;                      ///< whether anything may have been posted
};

}  // namespace

void foreseeImport(const Arguments& arguments, const Streams& streams,
                   const Surroundings& surroundings, const Foresight& foresight) {
  Arguments dry = arguments;
  dry.dryRun = true;
  ImportCommand(dry, streams, surroundings).foresee(foresight);
}

ExitStatus runImport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings) {
  const auto command = std::make_shared<ImportCommand>(arguments, streams, surroundings);
  const ImportResult& result = command->run();
  (arguments.json ? writeImportJson : writeImportText)(result, streams.out);
  return result.status();
}

}  // namespace velk
