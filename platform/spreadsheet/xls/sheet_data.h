// The cells of a worksheet and their texts, in a few large blocks: a cell is eight bytes, a text
// its characters and an offset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velk::xls {

/// Texts by their number, from 0.
class TextPool {
 public:
  /// Appends the text that `append(std::string&)` adds to its argument; answers its number.
  template <class Append>
  std::uint32_t add(Append&& append) {
    append(characters_);
    ends_.push_back(static_cast<std::uint32_t>(characters_.size()));
    return static_cast<std::uint32_t>(ends_.size() - 1);
  }
  std::size_t size() const { return ends_.size(); }
  /// Of all of them, in bytes.
  std::size_t length() const { return characters_.size(); }
  std::string_view operator[](std::size_t number) const {
    const std::size_t start = number == 0 ? 0 : ends_[number - 1];
    return std::string_view(characters_).substr(start, ends_[number] - start);
  }

 private:
  std::string characters_;
  std::vector<std::uint32_t> ends_;
};

enum class CellKind : std::uint8_t { Blank, Text, Number, Boolean, Error };

/// Row and column count from 0 here, as they do in files.
struct Cell {
  std::uint16_t row;
  std::uint8_t column;
  CellKind kind;
  std::uint32_t value;  ///< number of a text or a number; the boolean or error itself
};

class CellTable {
 public:
  /// Replaces an earlier cell at the same place.
  void add(const Cell& cell);

  /// Every row up to the last one with a cell, each in the order of its columns.
  const std::vector<std::vector<Cell>>& rows() const { return rows_; }
  /// Nothing when there is no such cell.
  const Cell* find(std::size_t row, std::size_t column) const;

 private:
  std::vector<std::vector<Cell>> rows_;
};

}  // namespace velk::xls
