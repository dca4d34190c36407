// A record set that has been read whole.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "base/errors.h"
#include "platform/database.h"

namespace velk {

class MemoryRecordset final : public Recordset {
 public:
  /// A closed one: the result of a statement without rows.
  MemoryRecordset() = default;
  /// An open one; `cells` row by row. `columns` is at least 1 and divides their number.
  MemoryRecordset(std::size_t columns, std::vector<Value> cells);

  std::int32_t State() const override { return open_ ? stateOpen : stateClosed; }
  bool isEOF() const override;
  bool isBOF() const override;
  void MoveNext() override;
  Value field(std::size_t position) const override;
  std::shared_ptr<Recordset> NextRecordset() override;
  void Close() override;

  /// Of an open one.
  std::size_t columns() const { return columns_; }

  /// What NextRecordset answers, however often it is asked: a further result, or the error met on
  /// the way to it.
  void setNext(std::shared_ptr<MemoryRecordset> next) { next_ = std::move(next); }
  void setNextError(RuntimeError error) { nextError_ = std::move(error); }

 private:
  void requireOpen() const;
  std::size_t rows() const { return cells_.size() / columns_; }

  std::size_t columns_ = 1;
  std::vector<Value> cells_;
  std::size_t row_ = 0;
  bool open_ = false;
  std::shared_ptr<MemoryRecordset> next_;
  std::optional<RuntimeError> nextError_;
};

}  // namespace velk
