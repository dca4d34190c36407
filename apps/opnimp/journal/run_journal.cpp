#include "apps/opnimp/journal/run_journal.h"

#include <array>
#include <utility>

#include "apps/opnimp/journal/run_index.h"

namespace velk {

// Synced, so that a loss of power leaves at least the word that the run had begun. Others have
// nothing of it yet.
RunJournal::RunJournal(JournalFile& file, const RunStart& run, std::string_view fileBytes,
                       std::function<void()> syncOthers)
    : file_(file), syncOthers_(std::move(syncOthers)) {
  EntryWriter behind;
  writeBeforeFile(writer_, run, fileBytes.size());
  writeBehindFile(behind, run);
  file_.writeLong(EntryType::RunBegun, std::array{writer_.payload(), fileBytes, behind.payload()});
  file_.sync();
  lastSync_ = Clock::now();
}

void RunJournal::recordBegins(std::size_t record) {
  writer_.clear();
  writer_.number(record);
  file_.write(EntryType::RecordBegun, writer_.payload());
  syncWhenDue();
}

// In one write, so that no end between the two has a record of these begin once more.
void RunJournal::recordsBeginAgain(std::size_t first, std::size_t last) {
  writer_.clear();
  writer_.number(first);
  if (first != last) file_.add(EntryType::RecordBegun, writer_.payload());
  recordBegins(last);
}

// Written with what follows, which is the next record's beginning or the run's end: one write less.
void RunJournal::recordEnds(std::size_t record, const RecordTrace& trace) {
  writer_.clear();
  writeRecordEnd(writer_, record, trace);
  file_.add(EntryType::RecordEnded, writer_.payload());
}

void RunJournal::hostChanges(const HostChange& change) {
  writer_.clear();
  write(writer_, change);
  file_.write(EntryType::HostChanged, writer_.payload());
}

void RunJournal::serverHas(std::string_view history) {
  writer_.clear();
  writer_.text(history);
  file_.write(EntryType::ServerHistory, writer_.payload());
}

void RunJournal::mayBeKept() {
  file_.write(EntryType::MayBeKept, {});
  file_.sync();
}

// A run that has ended leaves nothing in doubt, whether or not the entry's own sync comes to pass.
void RunJournal::runEnds(const RunEnd& end) {
  syncOthers_();
  writer_.clear();
  write(writer_, end);
  file_.write(EntryType::RunEnded, writer_.payload());
  file_.sync();
}

void RunJournal::recordsDoubted(std::uint64_t run, std::size_t first) {
  writer_.clear();
  writer_.number(run).number(first);
  file_.write(EntryType::RecordsDoubted, writer_.payload());
  file_.sync();
}

// Before a record's calls, so that everything before them is on the disk, and that it begins.
void RunJournal::syncWhenDue() {
  if (++sinceSync_ >= recordsBetweenSyncs || Clock::now() - lastSync_ >= timeBetweenSyncs) sync();
}

void RunJournal::sync() {
  syncOthers_();
  file_.write(EntryType::OthersSynced, {});
  file_.sync();
  sinceSync_ = 0;
  lastSync_ = Clock::now();
}

}  // namespace velk
