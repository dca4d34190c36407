#include "platform/memory_recordset.h"

#include <utility>

namespace velk {

MemoryRecordset::MemoryRecordset(std::size_t columns, std::vector<Value> cells)
    : columns_(columns), cells_(std::move(cells)), open_(true) {}

void MemoryRecordset::requireOpen() const {
  if (!open_) throw RuntimeError(ErrorNumber::ObjectClosed);
}

bool MemoryRecordset::isEOF() const {
  requireOpen();
  return row_ == rows();
}

bool MemoryRecordset::isBOF() const {
  requireOpen();
  // No call moves back, so that only a record set without rows is before its first one.
  return cells_.empty();
}

void MemoryRecordset::MoveNext() {
  if (isEOF()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
  ++row_;
}

Value MemoryRecordset::field(std::size_t position) const {
  requireOpen();
  if (position >= columns_) throw RuntimeError(ErrorNumber::ItemNotFound);
  if (isEOF()) throw RuntimeError(ErrorNumber::NoCurrentRecord);
  return cells_[row_ * columns_ + position];
}

std::shared_ptr<Recordset> MemoryRecordset::NextRecordset() {
  if (nextError_) throw RuntimeError(*nextError_);
  return next_;
}

void MemoryRecordset::Close() {
  requireOpen();
  open_ = false;
  cells_.clear();
}

}  // namespace velk
