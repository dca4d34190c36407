#include "apps/opnimp/run/single_import.h"

#include <algorithm>
#include <memory>
#include <new>
#include <numeric>
#include <utility>

#include "apps/opnimp/audit/recording_connection.h"
#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/journal/record_hash.h"
#include "apps/opnimp/records/later_records.h"
#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/run/ds_types.h"
#include "apps/opnimp/run/long_values.h"
#include "apps/opnimp/run/ready_commands.h"
#include "apps/opnimp/run/refusals.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_mapping.h"
#include "apps/opnimp/warnings/find_warnings.h"
#include "base/errors.h"

namespace velk {

namespace {

bool hasPosting(const Recorder& recorder) {
  return std::ranges::count(recorder.calls(), CallKind::Procedure, &RecordedCall::kind) > 0;
}

/// Whether a run in one transaction is kept.
bool isWhole(const ImportResult& result) {
  return result.account.addsUp() &&
         std::ranges::none_of(result.traces.records, [](const RecordTrace& trace) {
           return isRefused(trace.outcome) || isDoubtful(trace.outcome) ||
                  trace.outcome == Outcome::NotReached;
         });
}

/// In UTF-16 a NUL follows the line feed, and an old system ends a text by its end sign.
bool endsWithinLine(std::string_view text) {
  using namespace std::string_view_literals;
  const std::size_t last = text.find_last_not_of("\0\x1A"sv);
  return last != std::string_view::npos && text[last] != '\n' && text[last] != '\r';
}

/// What a screen cannot read itself; null if there is nothing such.
const WorkbookRecords* readForScreen(const InputRecords& input) {
  const auto* const workbook = dynamic_cast<const WorkbookRecords*>(&input);
  return workbook != nullptr && workbook->isReadForScreens() ? workbook : nullptr;
}

}  // namespace

SingleImport::SingleImport(const Arguments& arguments, ImportCall& call)
    : call_(call),
      recorder_(arguments.dryRun ? Recorder::Mode::DryRun : Recorder::Mode::Post, call.gate),
      report_(arguments.dryRun),
      nextHost_(call, {result_, recorder_, report_, journal_}) {
  result_.arguments = arguments;
  result_.input = readInput(arguments);
}

void SingleImport::prepare(const std::string& database) {
  outputs_.emplace(arguments());
  result_.database = database;
  result_.user = call_.surroundings.user();
  result_.folder = applicationFolder({});
  result_.began = call_.surroundings.clock();
  // Before a record begins, so that no record is cut in two.
  report_.onRecord = [this](std::size_t record) {
    endIfInterrupted();
    call_.events.progress().show(record);
  };
}

/// Leaves out the records that earlier runs reached: the screen views the others only.
void SingleImport::resume(const Resumption& resumption) {
  if (resumption.run == 0) return;
  if (resumption.gapEnd != 0) {
    const InputRecords& input = *result_.input;
    throw UsageError("--resume: no run reached the records of " + arguments().file + " from " +
                     input.where(resumption.gapFirst) + " to " +
                     input.where(resumption.gapEnd - 1) +
                     ", but later ones: copy them to a file of their own and import that");
  }
  // Whether they are the same records is known when they are mapped.
  if (resumption.count != count()) {
    throw UsageError("--resume: run " + std::to_string(resumption.run) + " read " +
                     counted(resumption.count, "record", "records") + " in " + arguments().file +
                     ", which is read as " + counted(count(), "record", "records") +
                     " now; give the same options");
  }
  result_.resumes = resumption.run;
  result_.serverReplaced =
      !resumption.history.empty() && resumption.history != call_.hosts->history();
  result_.leftOut = resumption.first;
  result_.setApart = resumption.doubtful;
  result_.refusedBefore = resumption.refused;
  result_.passedOver = resumption.next == count();
  if (resumption.next == 0 || result_.passedOver) return;
  if (!resumption.doubtful.empty() && !outputs_->hasRejects()) {
    throw UsageError("run " + std::to_string(resumption.run) + " left " +
                     counted(resumption.doubtful.size(), "record", "records") + " of " +
                     arguments().file +
                     " in doubt: name a file with --rejects FILE; FILE.check.csv takes them");
  }
  result_.input = std::make_unique<LaterRecords>(std::move(result_.input), resumption.next);
}

template <class Steps>
void SingleImport::tryTo(Steps steps) {
  try {
    steps();
  } catch (const Refused& refused) {
    // What earlier screens posted is posted.
    (report_.begun() == 0 ? result_.refusal : result_.brokeOff) = refused.what();
  } catch (const RunEnded& ended) {
    result_.brokeOff = ended.why;
    result_.connectionLost = ended.connectionLost;
  } catch (const std::bad_alloc&) {
    if (!began_) throw;
    result_.brokeOff = "the memory ran out";
  }
}

void SingleImport::open() {
  tryTo([this] {
    if (const std::string& why = result_.input->conversion().refusal; !why.empty()) {
      throw Refused(why);
    }
    if (arguments().allOrNothing && !arguments().dryRun) {
      recorder_.gate().pass([this] { whole_.emplace(*call_.database, recorder_); });
    } else {
      watchDatabase();
    }
    openPart(0);
    prepareRun();
    if (call_.journal) {
      journal_.emplace(*call_.journal, result_, call_.surroundings,
                       [this] { return call_.dateOfUndated(); });
    }
  });
  if (hasEnded()) close();
}

void SingleImport::watchDatabase() {
  if (arguments().dryRun || !call_.database->canLeaveTransactions()) return;
  recorder_.watchForLeft([this] {
    bool open = false;  // nor if there is no answer: the next call has none either
    trapErrors([&] { open = call_.database->isInTransaction(); }, [](const RuntimeError&) {});
    return open;
  });
}

void SingleImport::import() {
  tryTo([this] {
    endIfInterrupted();
    result_.database = call_.hosts ? call_.hosts->shown() : result_.database;
    if (journal_) beginJournal();
    began_ = true;
    start_ = std::chrono::steady_clock::now();
    repeatedBefore_ = call_.database->repeatedCalls();
    // A file before it may have lost the host on which its screen was opened.
    std::optional<std::size_t> first;
    if (openedOn_ != call_.database) first = 0;
    for (bool done = false; !done;) {
      try {
        importRecords(first);
        done = true;
      } catch (const RunEnded& ended) {
        first = goOn(ended);
      }
    }
  });
  countRepeated();
  close();
}

void SingleImport::countRepeated() {
  const std::size_t all = call_.database->repeatedCalls();
  result_.repeatedCalls += all - repeatedBefore_;
  repeatedBefore_ = all;
}

void SingleImport::importRecords(std::optional<std::size_t> first) {
  if (first == count() && report_.begun() > 0) return;
  if (first) openPart(*first);
  importPart();
  while (partEnd_ < count() && !hasEnded() && !wasRefused()) {
    openPart(partEnd_);
    importPart();
  }
  recorder_.lookForLeft();
}

/// What a lost transaction held is taken back, and a dry run has posted nothing: both begin anew.
bool SingleImport::canGoOn() const {
  return call_.hosts && call_.hosts->areSeveral() && call_.database->isLost() && !whole_ &&
         !arguments().dryRun;
}

std::size_t SingleImport::goOn(const RunEnded& ended) {
  if (!canGoOn()) throw RunEnded(ended);
  session_.reset();
  countRepeated();
  const std::size_t first = nextHost_.goOn(ended);
  repeatedBefore_ = 0;
  toldRecords_ = first;
  watchDatabase();
  return first;
}

void SingleImport::beginJournal() {
  journal_->onEnd = [this](std::size_t record, const RecordTrace& trace) {
    call_.events.recordEnds(result_, record, trace);
    toldRecords_ = record + 1;
  };
  journal_->begin(result_, report_, recorder_);
  journal_->serverHas(call_.hosts->history());
  call_.events.runBegins(result_);
}

/// With as many records from `first` on as a screen takes.
void SingleImport::openPart(std::size_t first) {
  session_.reset();
  // Those that a screen viewed which lost its host come again.
  viewedRecords_ -= static_cast<long long>(viewedEnd_ - first);
  viewedEnd_ = first;
  partEnd_ = first + std::min(count() - first, kind().largestRecordCount);
  const bool isWhole = fillContents(first);
  session_.emplace(recorder_, SessionSetup{call_.folder, call_.surroundings.clock, messages(),
                                           !arguments().dryRun, &*contents_,
                                           isWhole ? readForScreen(*result_.input) : nullptr});
  result_.errorLog = session_->errorLogPath();
  recorder_.beginPart(first);
  report_.beginPart(first);
  lookAhead_.emplace(call_.beside, kind());
  // What is answered ahead is recorded like any other answer.
  ImportScreen& screen =
      session_->open(kind(), recorded(recorder_, answeredAhead(*lookAhead_, call_.database)));
  openedOn_ = call_.database;
  lookAhead_->follow(&screen);
  screen.run().setRecordsBefore(first);
  view(first == 0);
  // Read now, because the import empties the screen.
  viewedRecords_ += screen.RecordCount();
  viewedEnd_ = partEnd_;
  if (partEnd_ == count()) screenRecords_ = viewedRecords_;
}

/// What the screen is to find in the file: the bytes that the runner has read, whatever became of
/// the file since. All of them where it may, so that the one reading is checked against the other:
/// then true.
bool SingleImport::fillContents(std::size_t first) {
  contents_.emplace(arguments().file, result_.input->bytes());
  const bool isWhole = partEnd_ - first == count() && asPart(*result_.input) == nullptr;
  if (isWhole) return true;
  std::vector<std::size_t> records(partEnd_ - first);
  std::iota(records.begin(), records.end(), first);
  result_.input->write(*contents_, arguments().file, records);
  return false;
}

/// Of a foreseen import only what the screen says of the file is shown.
MessageHandler SingleImport::messages() {
  return [this, show = messagesTo(call_.events)](const Message& message) {
    if (!call_.viewed || !began_) show(message);
  };
}

/// A preview shows the first screen.
void SingleImport::view(bool isFirst) {
  const auto show = [&] {
    if (isFirst && call_.viewed) call_.viewed(arguments().file, session_->screen());
  };
  try {
    viewAndMap(*session_, arguments(), *result_.input, report_);
  } catch (const Refused&) {
    show();
    throw;
  }
  show();
}

/// All that can be known of the file's records before the first screen imports.
void SingleImport::prepareRun() {
  result_.mapping = readMapping(session_->screen());
  findWarningsNow();
  requireImportable(result_);
  requireDates(result_, call_.database->earliestDate(),
               civilFromDate(call_.surroundings.clock()).year,
               [this] { return call_.firstDate(); });
  // Each screen looks at its own records only, when those before are posted.
  if (partEnd_ < count() || call_.hasSeveralFiles) requireWhole(result_);
}

void SingleImport::importPart() {
  // What the screen said of View and of --map is no answer to Import.
  report_.beginStep();
  const EventResult event = session_->import();
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

void SingleImport::endIfInterrupted() const {
  const auto& interrupted = call_.surroundings.interrupted;
  if (interrupted && interrupted()) throw RunEnded{"it was interrupted"};
}

/// A database without the tables that an import asks before its first record is no company's.
void SingleImport::requireCompany() const {
  const auto& stop = report_.stopError();
  if (!stop || report_.begun() > 0 || hasPosting(recorder_) || !isOfSchema(*stop)) return;
  throw CannotOpen("the database " + result_.database +
                   " is none of this application: " + std::string(withoutEnd(stop->description())) +
                   "; nothing was imported. Choose another --database");
}

/// The import's word that nothing was posted, as long as nothing seen speaks against it.
bool SingleImport::wasRefused() const {
  return report_.refusal() && report_.begun() == 0 && !hasPosting(recorder_);
}

// The screen has to be gone when the transaction is taken back.
void SingleImport::close() {
  session_.reset();
  if (whole_) settle();
  tellOfLog();
  // A run that was refused early has no warnings yet, although they may explain the refusal.
  if (!began_ && result_.warnings.empty()) findWarningsNow();
}

void SingleImport::settle() {
  bool keep = false;
  if (!hasEnded() && !wasRefused()) {
    drawUp();
    keep = isWhole(result_);
  }
  const bool mayStay = keep || recorder_.changes() == Changes::NotKnown;
  if (journal_ && mayStay) keep = journal_->mayBeKept() && keep;
  const std::string failure = whole_->settle(keep);
  if (result_.brokeOff.empty()) result_.brokeOff = failure;
  whole_.reset();
}

/// The screen's messages may name the log, which a dry run does not write.
void SingleImport::tellOfLog() {
  if (!arguments().dryRun || call_.viewed) return;
  if (recorder_.lines().empty() || recorder_.shown().empty()) return;
  call_.events.notice("a dry run writes no error log; the report has what would be in it.");
}

// Of a file that is not converted they would tell what its conversion is there for.
void SingleImport::findWarningsNow() {
  if (!result_.input->conversion().refusal.empty()) return;
  result_.warnings = findWarnings(*result_.input, kind(), result_.mapping,
                                  civilFromDate(call_.surroundings.clock()).year);
  const auto longValues = call_.longValues.find(arguments().file);
  if (longValues != call_.longValues.end()) {
    addLongValues(result_.warnings, longValues->second, *result_.input);
  }
  const bool isPiped = arguments().file == standardStream && !result_.input->conversion().isSheet;
  if (isPiped && endsWithinLine(*arguments().piped)) {
    addWarning(result_.warnings, WarningId::UnendedInput, wholeFile);
  }
}

void SingleImport::breakOff(std::string why) {
  result_.brokeOff = std::move(why);
}

void SingleImport::refuse(std::string why) {
  session_.reset();
  result_.refusal = std::move(why);
}

void SingleImport::refuseWith(const std::string& file) {
  refuse("nothing of it was imported, since " + file + " is refused");
  result_.refusedWithAnother = true;
}

void SingleImport::giveUp(const std::string& why) {
  result_.brokeOff = why + ", and the database did not answer any more";
  if (whole_) recorder_.settle(Changes::NotKnown);
}

void SingleImport::endInJournal(std::string_view why) {
  result_.brokeOff = why;
  result_.ended = call_.surroundings.clock();
  drawUp();
  endJournal();
}

void SingleImport::endJournal() {
  if (!journal_) return;
  journal_->end(result_, {report_.ended(), screenRecords_, recorder_.changes()});
}

void SingleImport::evaluate() {
  if (!result_.passedOver) writeAccount();
  result_.commands = readyCommands(result_);
  evaluated_ = true;
  if (!began_) return;
  call_.earlier.push_back({&recorder_, [this](std::size_t record) { doubtFrom(record); }});
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start_;
  result_.seconds = took.count();
}

void SingleImport::doubtFrom(std::size_t record) {
  recorder_.doubtFrom(record + ImportScreen::firstDataRow);
  drawUp();
  if (outputs_) outputs_->writeRejects(result_);
  for (std::size_t i = record; i < count(); ++i) {
    const RecordTrace& trace = result_.traces.records[i];
    if (isDoubtful(trace.outcome)) call_.events.recordEnds(result_, i, trace);
  }
  // Last, as it is what may end the run.
  if (journal_) journal_->doubtFrom(result_.run, record);
}

/// The record that was cut off ends only now.
void SingleImport::tellOfEnd() {
  for (; toldRecords_ < report_.begun(); ++toldRecords_) {
    call_.events.recordEnds(result_, toldRecords_, result_.traces.records[toldRecords_]);
  }
  call_.events.runEnds(result_);
}

void SingleImport::writeAccount() {
  result_.noLookAhead = call_.beside.failure;
  if (wasRefused() && !result_.refused()) {
    result_.refusal = runRefusalText(*report_.refusal(), *result_.input, result_.mapping, kind());
  }
  drawUp();
  if (!result_.refused()) {
    findAllowedDsTypes();
    if (outputs_) outputs_->writeRejects(result_);
  }
  result_.ended = call_.surroundings.clock();
  endJournal();
}

void SingleImport::drawUp() {
  // Of a refused run, too: the report lists the log lines of the run as a whole.
  result_.traces = traceRecords(report_, recorder_, result_.warnings, count());
  result_.calls = figuresOf(recorder_);
  if (result_.refused()) return;
  result_.account = drawUpAccount(
      {kind(), *result_.input, result_.mapping, result_.traces, screenRecords_, report_.ended()});
}

/// So that the user can correct the salesmen who were refused.
void SingleImport::findAllowedDsTypes() {
  const bool rejected = std::ranges::any_of(result_.traces.records, [](const RecordTrace& trace) {
    return trace.outcome == Outcome::Rejected;
  });
  // After a run that broke off the database may not answer.
  if (kind().type != MasterType::Salesman || !rejected || !result_.brokeOff.empty()) return;
  // Not on the recorded connection, since this look-up is no part of the run.
  recorder_.gate().pass([this] { result_.allowedDsTypes = allowedDsTypes(*call_.database); });
}

// An amount that cannot be read is none of 0.
std::vector<JournaledRecord> SingleImport::recordsToPost() const {
  const InputRecords& input = *result_.input;
  // A foreseen import has no journal that knows them.
  std::vector<JournaledRecord> computed;
  if (!journal_) {
    computed = hashRecords(
        kind(), input, result_.mapping,
        {civilFromDate(call_.surroundings.clock()).year, [this] { return call_.dateOfUndated(); }});
  }
  const std::vector<JournaledRecord>& all = journal_ ? journal_->records() : computed;
  const std::size_t width = mappedWidth(result_.mapping);
  std::vector<JournaledRecord> records;
  for (std::size_t record = 0; record < all.size(); ++record) {
    const auto amounts = amountsOf(kind(), input, result_.mapping, record, width);
    if (!amounts || amounts->bill != 0) records.push_back(all[record]);
  }
  return records;
}

}  // namespace velk
