#include "apps/opnimp/audit/import_report.h"

#include <stdexcept>
#include <utility>

#include "mapping/import_run.h"

namespace velk {

const RecordReport& ImportReport::record(std::size_t position) const {
  // The account asks for every record of the file, also for those that the run did not reach.
  static const RecordReport notBegun;
  return position < records_.size() ? records_[position] : notBegun;
}

void ImportReport::beginPart(std::size_t before) {
  before_ = before;
  ended_ = false;
  inRecord_ = false;
}

void ImportReport::beginStep() {
  refusal_.reset();
  stop_.clear();
  stopError_.reset();
  lastError_.clear();
}

void ImportReport::cutOff(std::string why) {
  RecordReport& record = records_.back();
  record.fate = RecordReport::Fate::Stopped;
  record.texts.push_back(std::move(why));
}

void ImportReport::refused(const Finding& why, std::size_t row, std::string_view text) {
  refusal_ = Said{why, std::string(text), row == 0 ? 0 : before_ + row};
}

void ImportReport::runStopped(const RuntimeError& error, std::string_view text) {
  stopError_ = error;
  stop_ = "(" + std::to_string(error.number()) + "): " + std::string(text);
  RecordReport* const record = current();
  // An error after the last record stopped the run, but none of the records.
  if (record == nullptr || record->fate != RecordReport::Fate::Begun) return;
  // Memory that ran out is no fault of the record: without a call it was not even looked up.
  if (!error.is(ErrorNumber::OutOfMemory)) record->fate = RecordReport::Fate::Stopped;
  record->texts.push_back(stop_);
}

// A record's place is its position, since the rows of a mapping list come one after the other.
void ImportReport::recordBegins(std::size_t row) {
  // What onRecord throws ends the run between two records, so that none is current meanwhile.
  inRecord_ = false;
  if (before_ + row != records_.size() + ImportRun::firstDataRow) {
    throw std::logic_error("the import takes its records out of order");
  }
  // Row 1 is the mapping itself, so that this counts records from 1.
  if (onRecord) onRecord(before_ + row - ImportRun::mappingRow);
  records_.emplace_back().fate = RecordReport::Fate::Begun;
  inRecord_ = true;
}

void ImportReport::recordFound(Verdict verdict, const Finding& /*why*/, std::string_view text) {
  RecordReport* const record = current();
  if (record == nullptr) return;
  if (verdict == Verdict::Refused) record->fate = RecordReport::Fate::Refused;
  if (verdict == Verdict::Skipped) record->fate = RecordReport::Fate::Skipped;
  if (verdict == Verdict::Warned) record->warned = true;
  if (!text.empty()) record->texts.emplace_back(text);
}

void ImportReport::recordEnds(const Posting& posting) {
  RecordReport* const record = current();
  if (record == nullptr) return;
  record->posting = posting;
  const bool open = record->fate == RecordReport::Fate::Begun;
  // Without a call it remains "begun", which the account reports as a difference.
  if (open && posting.calls > 0) record->fate = RecordReport::Fate::Posted;
  inRecord_ = false;
  if (onRecordEnd) onRecordEnd(records_.size());
}

void ImportReport::errorTrapped(const RuntimeError& /*error*/, std::string_view text) {
  lastError_ = text;
  if (RecordReport* record = current()) {
    record->warned = true;
    record->texts.emplace_back(text);
  }
}

}  // namespace velk
