// A table of texts that come cell by cell, as the columns that a list shares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "base/growing_buffer.h"
#include "base/text_column.h"

namespace velk {

class TextTable {
 public:
  /// Cells come row by row, `columns` of them a row.
  explicit TextTable(std::size_t columns) : columns_(columns) {}

  /// Errors: 321 for a text with a NUL in it, 7 beyond a quarter of a gigabyte.
  void add(std::string_view text);
  /// Complete rows.
  std::size_t rows() const { return cells_ / columns_; }
  /// The columns of the complete rows; the table is empty again.
  std::vector<std::shared_ptr<const TextColumn>> release();

 private:
  std::size_t columns_;
  GrowingBuffer<char> texts_;
  std::size_t length_ = 0;
  GrowingBuffer<std::uint32_t> offsets_;
  std::size_t cells_ = 0;
};

}  // namespace velk
