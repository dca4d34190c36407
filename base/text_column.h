// An immutable column of texts: one character buffer and one table of offsets, both shared with the
// other columns of the same table.
//
// Touching fresh memory is the main cost of a big file, so a cell is four bytes and no object.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

namespace velk {

/// Where the cells of a table stand: row by row, `stride` cells a row.
struct CellOffsets {
  std::shared_ptr<const std::uint32_t[]> offsets;
  std::size_t rows = 0;
  std::size_t stride = 0;
};

class TextColumn {
 public:
  /// Column `column` of a table. Every offset points into `buffer` at the start of a text that a
  /// NUL ends; texts hold no NUL.
  TextColumn(std::shared_ptr<const char[]> buffer, CellOffsets cells, std::size_t column)
      : buffer_(std::move(buffer)), cells_(std::move(cells)), column_(column) {}

  std::size_t size() const { return cells_.rows; }
  /// The text at a zero-based position below size().
  std::string_view operator[](std::size_t row) const { return start(row); }
  bool isEmpty(std::size_t row) const { return *start(row) == '\0'; }

 private:
  const char* start(std::size_t row) const {
    return buffer_.get() + cells_.offsets.get()[row * cells_.stride + column_];
  }

  std::shared_ptr<const char[]> buffer_;
  CellOffsets cells_;
  std::size_t column_;
};

}  // namespace velk
