// A table of texts that come cell by cell, as the columns that a list shares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "base/text_column.h"

namespace velk {

class TextTable {
 public:
  /// Cells come row by row, `columns` of them a row.
  explicit TextTable(std::size_t columns) { cells_.columns = columns; }

  /// Errors: 321 for a text with a NUL in it, 7 beyond a quarter of a gigabyte.
  void add(std::string_view text);
  /// Complete rows.
  std::size_t rows() const { return cells_.rows(); }
  /// The columns of the complete rows; the table is empty again.
  std::vector<std::shared_ptr<const TextColumn>> release() {
    return TextColumn::of(std::move(cells_));
  }

 private:
  TextCells cells_;
};

}  // namespace velk
