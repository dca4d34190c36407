#include "apps/opnimp/audit/import_report.h"

#include "mapping/import_run.h"

namespace velk {

namespace {

Said said(const Finding& why, std::string_view text, std::size_t row = 0) {
  return {why, std::string(text), row};
}

}  // namespace

const RecordReport& ImportReport::record(std::size_t position) const {
  static const RecordReport notBegun;
  return position < records_.size() ? records_[position] : notBegun;
}

void ImportReport::beginStep() {
  mappingRefusal_.reset();
  lastError_.clear();
}

void ImportReport::viewRefused(const Finding& why, std::string_view text) {
  viewRefusal_ = said(why, text);
}

void ImportReport::mappingRefused(const Finding& why, std::string_view text) {
  mappingRefusal_ = said(why, text);
}

void ImportReport::runRefused(const Finding& why, std::size_t row, std::string_view text) {
  runRefusal_ = said(why, text, row);
}

void ImportReport::runStopped(const RuntimeError& error, std::string_view text) {
  stop_ = "(" + std::to_string(error.number()) + "): " + std::string(text);
  RecordReport* const record = current();
  if (record == nullptr || record->fate != RecordReport::Fate::Begun) return;
  record->fate = RecordReport::Fate::Stopped;
  record->texts.push_back(stop_);
}

// The rows of a mapping list come one after the other, so that a record's place is its position.
void ImportReport::recordBegins(std::size_t row) {
  inRecord_ = false;
  if (onRecord) onRecord(row - ImportRun::mappingRow);
  records_.resize(row - ImportRun::firstDataRow + 1);
  records_.back().fate = RecordReport::Fate::Begun;
  inRecord_ = true;
}

void ImportReport::recordRefused(const Finding& /*why*/, std::string_view text) {
  if (RecordReport* record = current()) {
    record->fate = RecordReport::Fate::Refused;
    record->texts.emplace_back(text);
  }
}

void ImportReport::recordSkipped(const Finding& /*why*/) {
  if (RecordReport* record = current()) record->fate = RecordReport::Fate::Skipped;
}

void ImportReport::recordWarned(const Finding& /*why*/, std::string_view text) {
  if (RecordReport* record = current()) {
    record->warned = true;
    record->texts.emplace_back(text);
  }
}

void ImportReport::recordEnds(const Posting& posting) {
  RecordReport* const record = current();
  if (record == nullptr) return;
  record->posting = posting;
  if (posting.calls > 0) record->fate = RecordReport::Fate::Posted;
  inRecord_ = false;
}

void ImportReport::errorTrapped(const RuntimeError& /*error*/, std::string_view text) {
  lastError_ = text;
  if (RecordReport* record = current()) {
    record->warned = true;
    record->texts.emplace_back(text);
  }
}

void ImportReport::exportRefused(const Finding& why, std::string_view text) {
  exportRefusal_ = said(why, text);
}

}  // namespace velk
