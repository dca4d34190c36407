#include "apps/opnimp/run/journaled_import.h"

#include <algorithm>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/later_records.h"
#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/warnings/find_warnings.h"
#include "base/errors.h"

namespace velk {

namespace {

const RunSummary& summaryOf(const OpenJournal& journal, std::uint64_t number) {
  const RunSummary* const run = journal.index.find(number);
  if (run == nullptr) {
    requireWhole(journal);
    throw UsageError("the journal " + journal.path + " has no run " + std::to_string(number) +
                     "; `opnimp runs` lists those that it has");
  }
  if (journal.index.isRunning && run == &journal.index.runs.back()) {
    throw CannotOpen("run " + std::to_string(number) + " is still going on; wait until it ends");
  }
  return *run;
}

const ImportKind& kindOf(const RunStart& start) {
  const ImportKind* const kind = findKind(start.kind);
  if (kind != nullptr) return *kind;
  throw CannotOpen("run " + std::to_string(start.number) + " is of the kind " + start.kind +
                   ", which this program does not know: show it with the version that imported it");
}

/// The journal has what the screens read, and the lines that it stood in.
std::unique_ptr<const InputRecords> recordsOf(const ImportKind& kind, const JournaledRun& run) {
  if (kind.format == FileFormat::Workbook) {
    const std::string_view sheet = assumedValue(run.start.assumed, sheetAssumption);
    return std::make_unique<WorkbookRecords>(run.fileBytes, std::string(sheet));
  }
  Conversion conversion;
  conversion.assumptions = run.start.assumed;
  auto records = std::make_unique<CsvRecords>(run.fileBytes, std::move(conversion));
  const std::size_t first = run.start.firstRecord;
  for (std::size_t i = 0; i < run.start.records.size() && first + i < records->count(); ++i) {
    records->setLine(first + i, run.start.records[i].line);
  }
  return records;
}

/// What is said of a record of which only the beginning is known.
const RecordReport& inDoubt() {
  static const RecordReport said = [] {
    RecordReport report;
    report.fate = RecordReport::Fate::Begun;
    report.texts = {
        "the run broke off at this record, or may have: whether it was posted is not "
        "known"};
    return report;
  }();
  return said;
}

/// Of a line that the disk may not have had yet when the power failed.
void doubt(RecordedLine& line) {
  if (line.kept != RecordedLine::Kept::InFile) return;
  line.kept = RecordedLine::Kept::NotWritten;
  line.writeError = "the machine was started anew before the disk had it for certain";
}

std::string endOf(const RunSummary& summary, const JournaledRun& run) {
  if (run.end) return run.end->brokeOff;
  if (summary.isTakenBack()) {
    return "it did not end by itself, and its transaction was still open: the database takes that "
           "back, so that nothing of it stays, unless the call that it was in had ended the "
           "transaction";
  }
  return summary.powerLost ? "it did not end by itself, and the machine was started anew since: as "
                             "many records as the journal may have lost are called unknown"
                           : "it did not end by itself: the program was ended from outside";
}

}  // namespace

JournaledImport::JournaledImport(const OpenJournal& journal, std::uint64_t number) {
  const RunSummary& summary = summaryOf(journal, number);
  try {
    run_ = readRun(*journal.file, number);
  } catch (const RuntimeError& error) {
    throw CannotOpen("the journal " + journal.path + " could not be read: " + error.description());
  }
  const RunStart& start = run_.start;
  result_.journal = journal.path;
  result_.run = number;
  result_.arguments.kind = &kindOf(start);
  result_.arguments.file = start.file;
  result_.arguments.accept = start.accepted;
  result_.database = start.database;
  result_.input = recordsOf(kind(), run_);
  if (start.firstRecord > 0) {
    requireAgreement(start.firstRecord < result_.input->count());
    result_.input = std::make_unique<LaterRecords>(std::move(result_.input), start.firstRecord);
  }
  result_.resumes = start.resumes;
  result_.setApart = start.setApart;
  result_.leftOut = firstReached(journal.index, start.resumes);
  result_.refusedBefore = refusedBefore(journal.index, start.resumes);
  result_.mapping = start.mapping;
  result_.warnings =
      findWarnings(*result_.input, kind(), start.mapping, civilFromDate(start.time).year);
  result_.errorLog = start.errorLog;
  result_.user = start.user;
  result_.folder = start.folder;
  result_.fileHash = hexText(start.fileHash);
  result_.began = start.time;
  result_.hostChanges = run_.hostChanges;
  if (run_.end) result_.ended = run_.end->time;
  if (run_.end) result_.refusal = run_.end->refusal;
  result_.brokeOff = endOf(summary, run_);
  settle(summary);
  trace(summary, laterRuns(journal.index, summary));
  if (result_.refused()) return;
  result_.account = drawUpAccount({kind(), *result_.input, start.mapping, result_.traces,
                                   run_.end ? run_.end->screenRecords : std::nullopt,
                                   run_.end && run_.end->completed});
}

void JournaledImport::requireAgreement(bool agrees) const {
  if (agrees) return;
  throw CannotOpen("the journal " + result_.journal + " contradicts itself about run " +
                   std::to_string(result_.run) + ": compare the database with the file");
}

/// Calls are written down before it is known whether their transaction is kept, and before the disk
/// has what they did.
void JournaledImport::settle(const RunSummary& summary) {
  const Changes open = summary.isTakenBack()       ? Changes::TakenBack
                       : run_.start.oneTransaction ? Changes::NotKnown
                                                   : Changes::Stand;
  const Changes changes = run_.end ? run_.end->changes : open;
  for (RecordEnd& record : run_.records) {
    const bool mayBeLost = summary.mayBeLost(record.record);
    const bool isLeftOpen = mayBeLost && changes != Changes::TakenBack;
    settleCalls(record.calls, isLeftOpen ? Changes::NotKnown : changes);
    if (summary.mayBeUnsynced(record.record)) std::ranges::for_each(record.lines, doubt);
  }
  if (run_.end) settleCalls(run_.end->strays, changes);
}

void JournaledImport::trace(const RunSummary& summary, std::span<const std::uint64_t> later) {
  static const RecordReport nothingSaid;
  Traces& traces = result_.traces;
  traces.records.resize(result_.input->count());
  requireAgreement(traces.records.size() == summary.outcomes.size());
  addReadings(traces.records, result_.warnings);
  for (const RecordEnd& ended : run_.records) {
    RecordTrace& trace = traces.records.at(ended.record);
    trace.said = &ended.said;
    pointTo(trace.calls, ended.calls);
    pointTo(trace.lines, ended.lines);
    pointTo(trace.messages, ended.messages);
  }
  for (std::size_t record = 0; record < traces.records.size(); ++record) {
    RecordTrace& trace = traces.records[record];
    trace.outcome = summary.outcome(record);
    trace.laterRun = later[record];
    if (trace.said != nullptr) continue;
    trace.said = trace.outcome == Outcome::Unknown ? &inDoubt() : &nothingSaid;
  }
  if (!run_.end) return;
  pointTo(traces.strays, run_.end->strays);
  pointTo(traces.runLines, run_.end->lines);
  pointTo(traces.runMessages, run_.end->messages);
}

}  // namespace velk
