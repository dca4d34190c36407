// The cells of a worksheet and their texts: a cell is eight bytes, a text its characters and an
// offset. Rows and columns count from 0 here, as they do in files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/xls/records.h"

namespace velk::xls {

/// Texts by their number, from 0, in one string: a string each would make reading 16 % slower and
/// an export of 60,000 salesmen 10 %.
class TextPool {
 public:
  /// Answer the number of the new text, which may be the next one of a record.
  std::uint32_t add(std::string_view text);
  std::uint32_t add(ContinuedReader& reader);

  std::size_t size() const { return ends_.size(); }
  /// Of all of them, in bytes.
  std::size_t length() const { return characters_.size(); }
  std::string_view operator[](std::size_t number) const {
    const std::size_t start = number == 0 ? 0 : ends_[number - 1];
    return std::string_view(characters_).substr(start, ends_[number] - start);
  }

 private:
  std::uint32_t endText();

  std::string characters_;
  std::vector<std::uint32_t> ends_;
};

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
