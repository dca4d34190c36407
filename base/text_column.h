// An immutable column of texts, as one of many of a table that keeps all its characters together.
//
// Touching fresh memory is the main cost of a big file, so a cell is four bytes and no object.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velk {

/// The cells of a table, row by row, all rows complete. Each is an offset into the characters,
/// where its text starts; a NUL ends it, so texts contain none.
struct TextCells {
  std::size_t columns = 0;
  std::string characters;
  std::vector<std::uint32_t> offsets;

  std::size_t rows() const { return columns == 0 ? 0 : offsets.size() / columns; }
};

class TextColumn {
 public:
  TextColumn(std::shared_ptr<const TextCells> cells, std::size_t column)
      : cells_(std::move(cells)), column_(column) {}

  /// All columns of a table; they share its cells.
  static std::vector<std::shared_ptr<const TextColumn>> of(TextCells&& table) {
    const auto cells = std::make_shared<const TextCells>(std::move(table));
    std::vector<std::shared_ptr<const TextColumn>> columns;
    for (std::size_t column = 0; column < cells->columns; ++column) {
      columns.push_back(std::make_shared<const TextColumn>(cells, column));
    }
    return columns;
  }

  std::size_t size() const { return cells_->rows(); }
  /// The text at a zero-based position below size().
  std::string_view operator[](std::size_t row) const { return start(row); }
  bool isEmpty(std::size_t row) const { return *start(row) == '\0'; }

 private:
  const char* start(std::size_t row) const {
    return cells_->characters.data() + cells_->offsets[row * cells_->columns + column_];
  }

  std::shared_ptr<const TextCells> cells_;
  std::size_t column_;
};

}  // namespace velk
