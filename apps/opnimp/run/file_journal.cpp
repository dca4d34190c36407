#include "apps/opnimp/run/file_journal.h"

#include <algorithm>
#include <span>
#include <utility>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/program_version.h"
#include "apps/opnimp/journal/record_hash.h"
#include "apps/opnimp/journal/repetition.h"
#include "apps/opnimp/records/later_records.h"
#include "platform/native/native_sync.h"

namespace velk {

namespace {

/// Waits until the disk has the lines of the error log, and what an embedded database has
/// confirmed: its driver has it wait only when its log of changes is full.
void syncWhatIsTold(const std::string& errorLog, const std::string& database) {
  const auto sync = [](const std::string& path) {
    trapErrors([&] { syncFile(path); },
               [&](const RuntimeError& error) {
                 throw RuntimeError(error.number(),
                                    path + " could not be synced: " + error.description());
               });
  };
  sync(errorLog);
  if (database.empty()) return;
  sync(database + "-wal");
  // Without that file a change is one when the file that undoes it is gone, or empty.
  sync(database + "-journal");
  syncFolderOf(database);
}

std::string cannotWrite(const std::string& path, const RuntimeError& error) {
  return "the journal " + path + " could not be written: " + error.description();
}

/// The file's records, as an earlier run has them.
std::vector<JournaledRecord> hashedAs(const RunStart& earlier, const ImportResult& result) {
  return hashRecords(
      *result.arguments.kind, *result.input, result.mapping,
      {civilFromDate(result.began).year, [&] { return earlier.undated; }, earlier.isEarly});
}

/// Whether the records are those that the earlier run would have gone on with.
bool hasSameRecords(const RunStart& resumed, std::size_t firstRecord, const ImportResult& result) {
  const std::size_t left = firstRecord - std::min(firstRecord, resumed.firstRecord);
  if (left > resumed.records.size()) return false;
  return std::ranges::equal(std::span(resumed.records).subspan(left), hashedAs(resumed, result), {},
                            &JournaledRecord::hash, &JournaledRecord::hash);
}

/// Records are known again by what is mapped, and by how it is read: with other columns, or with
/// dates or amounts read otherwise, they would be other ones.
void requireSameReading(const RunIndex& index, const RunStart& run, const ImportResult& result) {
  const RunSummary* const resumed = index.find(run.resumes);
  if (resumed == nullptr) return;
  const std::string which = "run " + std::to_string(run.resumes) + ", which is to be resumed, ";
  if (resumed->start.mapping != run.mapping) {
    throw Refused(which + "mapped the columns otherwise; give the same --map");
  }
  if (!hasSameRecords(resumed->start, run.firstRecord, result)) {
    throw Refused(which + "read dates or amounts of the file otherwise; give the same options");
  }
}

template <class Item>
std::vector<Item> copies(const std::vector<const Item*>& items) {
  std::vector<Item> copied;
  copied.reserve(items.size());
  for (const Item* item : items) copied.push_back(*item);
  return copied;
}

std::vector<const Misreading*> readingsByRecord(std::span<const Warning> warnings) {
  std::vector<const Misreading*> readings;
  for (const Warning& warning : warnings) pointTo(readings, warning.readings);
  std::ranges::stable_sort(readings, {}, &Misreading::record);
  return readings;
}

RunStart describe(const ImportJournal& journal, const ImportResult& result,
                  const Surroundings& surroundings,
                  const std::function<std::optional<Date>()>& undated) {
  RunStart run;
  run.time = result.began;
  run.user = result.user;
  run.version = programVersion;
  run.folder = result.folder;
  run.machineStart = surroundings.machineStart;
  run.kind = result.arguments.kind->name;
  run.file = result.arguments.file;
  run.fileHash = hashOf(result.input->fileBytes());
  run.database = result.database;
  run.databaseId = journal.databaseId();
  run.errorLog = result.errorLog;
  run.accepted = result.arguments.accept;
  run.assumed = result.input->conversion().assumptions;
  run.mapping = result.mapping;
  run.oneTransaction = result.arguments.allOrNothing;
  run.resumes = result.resumes;
  run.setApart = result.setApart;
  const LaterRecords* const later = asPart(*result.input);
  if (later != nullptr) run.firstRecord = later->first();
  run.records =
      hashRecords(*result.arguments.kind, *result.input, result.mapping,
                  {civilFromDate(run.time).year, [&] { return run.undated = undated(); }});
  return run;
}

}  // namespace

FileJournal::FileJournal(ImportJournal& journal, ImportResult& result,
                         const Surroundings& surroundings,
                         const std::function<std::optional<Date>()>& undated)
    : journal_(journal), start_(describe(journal, result, surroundings, undated)) {
  result.fileHash = hexText(start_.fileHash);
  requireSameReading(journal.index(), start_, result);
  // Only opening balances: master data is imported again by design.
  if (result.arguments.kind->opening == nullptr || result.arguments.again) return;
  const std::string refusal = repetitionRefusal(
      journal.index(), start_, [&](const RunStart& earlier) { return hashedAs(earlier, result); },
      result.input->placeWord());
  if (refusal.empty()) return;
  result.repeats = true;
  throw Refused(refusal);
}

void FileJournal::begin(ImportResult& result, ImportReport& report, const Recorder& recorder) {
  told_.resize(start_.records.size());
  readings_ = readingsByRecord(result.warnings);
  if (!result.isDryRun()) writeBegin(result);
  start_ = {};  // it is long
  listen(report, recorder);
}

void FileJournal::writeBegin(ImportResult& result) {
  start_.number = journal_.nextRun();
  start_.database = result.database;
  try {
    run_.emplace(journal_.file(), start_, result.input->bytes(),
                 [log = result.errorLog, database = journal_.databaseFile()] {
                   syncWhatIsTold(log, database);
                 });
  } catch (const RuntimeError& error) {
    throw CannotOpen(cannotWrite(journal_.path(), error) + "; nothing was imported");
  }
  result.journal = journal_.path();
  result.run = start_.number;
}

// Whoever listens already may end the run before the record: then it does not begin.
void FileJournal::listen(ImportReport& report, const Recorder& recorder) {
  report.onRecord = [this, &recorder, before = std::move(report.onRecord)](std::size_t record) {
    if (before) before(record);
    mark_ = {recorder.calls().size(), recorder.lines().size(), recorder.shown().size()};
    if (run_) orEndRun([&] { run_->recordBegins(record - 1); });
    begun_ = std::max(begun_, record);
  };
  report.onRecordEnd = [this, &report, &recorder](std::size_t record) {
    recordEnds(record - 1, report, recorder);
  };
}

void FileJournal::recordEnds(std::size_t record, const ImportReport& report,
                             const Recorder& recorder) {
  trace_.said = &report.record(record);
  trace_.calls.clear();
  trace_.lines.clear();
  trace_.messages.clear();
  trace_.readings.clear();
  auto reading = std::ranges::lower_bound(readings_, record, {}, &Misreading::record);
  for (; reading != readings_.end() && (*reading)->record == record; ++reading) {
    trace_.readings.push_back(*reading);
  }
  pointTo(trace_.calls, recorder.calls(), mark_.calls);
  pointTo(trace_.lines, recorder.lines(), mark_.lines);
  pointTo(trace_.messages, recorder.shown(), mark_.messages);
  trace_.outcome = outcomeOf(trace_);
  if (run_) orEndRun([&] { run_->recordEnds(record, trace_); });
  told_[record] = trace_.outcome;
  if (onEnd) onEnd(record, trace_);
}

void FileJournal::beginAgain(std::size_t first, std::size_t last) {
  if (!run_) return;
  orEndRun([&] { run_->recordsBeginAgain(first, last); });
  std::fill(told_.begin() + static_cast<std::ptrdiff_t>(first), told_.end(), std::nullopt);
}

void FileJournal::hostChanges(const HostChange& change) {
  if (run_) orEndRun([&] { run_->hostChanges(change); });
}

void FileJournal::serverHas(const std::string& history) {
  if (run_ && !history.empty()) orEndRun([&] { run_->serverHas(history); });
}

bool FileJournal::mayBeKept() {
  if (!run_) return true;
  return trapErrors(
      [&] { run_->mayBeKept(); },
      [this](const RuntimeError& error) { failure_ = cannotWrite(journal_.path(), error); });
}

void FileJournal::doubtFrom(std::uint64_t run, std::size_t record) {
  if (run_) orEndRun([&] { run_->recordsDoubted(run, record); });
}

// A run that cannot be written down does not go on.
template <class Write>
void FileJournal::orEndRun(Write write) {
  trapErrors(write, [this](const RuntimeError& error) {
    failure_ = cannotWrite(journal_.path(), error);
    throw RunEnded{failure_};
  });
}

void FileJournal::end(ImportResult& result, const Ending& ending) {
  if (!run_) return;
  trapErrors([&] { refusingWithoutMemory([&] { writeEnd(result, ending); }); },
             [&](const RuntimeError& error) { failure_ = cannotWrite(journal_.path(), error); });
  if (!failure_.empty()) {
    result.brokeOff = failure_ + ". What the run did after that is in this report only";
  }
}

// A record that was cut off ends only now; of another one more may be known than when it ended.
void FileJournal::writeEnd(const ImportResult& result, const Ending& ending) {
  const Traces& traces = result.traces;
  RunEnd end{result.ended,
             ending.completed,
             ending.screenRecords,
             ending.changes,
             result.refusal,
             result.brokeOff,
             {},
             copies(traces.strays),
             copies(traces.runLines),
             copies(traces.runMessages)};
  for (std::size_t record = 0; record < begun_; ++record) {
    const RecordTrace& trace = traces.records[record];
    if (!told_[record]) {
      run_->recordEnds(record, trace);
    } else if (*told_[record] != trace.outcome) {
      end.revised.emplace_back(record, trace.outcome);
    }
  }
  run_->runEnds(end);
}

}  // namespace velk
