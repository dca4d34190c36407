// The cells of a worksheet: one is eight bytes. Rows and columns count from 0 here, as they do in
// files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velk::xls {

struct Cell {
  /// The last two are of formulas whose result the file does not have: blank, or a number.
  enum class Kind : std::uint8_t { Blank, Text, Number, Boolean, Error, NoResult, NoNumber };

  std::uint16_t row;
  std::uint8_t column;
  Kind kind;
  std::uint32_t value;  ///< number of a text or a number; the boolean or error itself
};

class CellTable {
 public:
  /// Replaces an earlier cell at the same place.
  void add(const Cell& cell);

  /// Every row up to the last one with a cell, each in the order of its columns.
  const std::vector<std::vector<Cell>>& rows() const { return rows_; }
  /// Null when there is no such cell.
  const Cell* find(std::size_t row, std::size_t column) const;

 private:
  std::vector<std::vector<Cell>> rows_;
};

}  // namespace velk::xls
