// The report-style list: columns with titles, rows of texts.
//
// Rows are numbered from 1. Columns are numbered from 0: column 0 is a row's own text, the others
// are its sub-items. A column either shares an immutable text column or has no texts; single cells
// written on top of it (the mapping row's) are kept apart, so mapping a file column to a field
// copies nothing.
//
// Properties: BackColor, ForeColor, ToolTipText (shown where the pointer rests on the list),
// ScrollLeft (how far the list is scrolled to the right). Error 35600 for a row or column that does
// not exist.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text_column.h"
#include "ui/control.h"

namespace velk {

enum class MouseButton : std::int16_t { Left = 1, Right = 2 };

class ListView final : public Control {
 public:
  ListView(Form& form, const Control* container, std::string_view name, const Bounds& bounds)
      : Control(form, "ListView", container, name, bounds,
                {{Property::ScrollLeft, 0}, {Property::ToolTipText, ""}}, systemColor::window) {}

  static constexpr int defaultColumnWidth = 1440;

  std::size_t columnCount() const { return columns_.size(); }
  const std::string& title(std::size_t column) const { return at(column).title; }
  int width(std::size_t column) const { return at(column).width; }
  void setTitle(std::size_t column, std::string_view title);
  void setWidth(std::size_t column, int width);
  void addColumn(std::string_view title, int width = defaultColumnWidth);
  /// Removes the columns with their texts; the rows stay.
  void clearColumns();

  std::size_t rowCount() const { return rowCount_; }
  /// Removes all rows; the columns stay.
  void clearRows();
  /// Adds empty rows at the end.
  void addRows(std::size_t count);

  std::string_view cell(std::size_t row, std::size_t column) const;
  bool isBold(std::size_t row, std::size_t column) const;
  void setCell(std::size_t row, std::size_t column, std::string_view text, bool bold = false);

  /// Rows from `firstRow` on show `cells` under the column; null: they are empty. Cells written
  /// before at those rows are gone; rows above keep theirs.
  void setColumn(std::size_t column, std::size_t firstRow, std::shared_ptr<const TextColumn> cells);
  /// The texts that a column shares; null when there are none.
  std::shared_ptr<const TextColumn> columnCells(std::size_t column) const;

  /// True when any row's cell under the column is empty.
  bool hasEmptyCell(std::size_t column) const;

  /// Marks a column as the one that is chosen, or none.
  void chooseColumn(std::optional<std::size_t> column);
  std::optional<std::size_t> chosenColumn() const { return chosen_; }

  std::function<void(std::size_t column)> onColumnClick;
  /// A mouse button was released over the list, at `x` from its left edge.
  std::function<void(MouseButton button, int x)> onMouseUp;

  void userColumnClick(std::size_t column);
  void userMouseUp(MouseButton button, int x);
  // These raise no event, so the model follows them at any time.
  void userColumnWidth(std::size_t column, int width);
  void userScroll(int left);

 private:
  struct Cell {
    std::string text;
    bool bold = false;
  };
  struct Column {
    std::string title;
    int width = defaultColumnWidth;
    std::map<std::size_t, Cell> written;
    std::shared_ptr<const TextColumn> cells;
    std::size_t firstRow = 1;
  };

  const Column& at(std::size_t column) const;
  Column& at(std::size_t column) { return const_cast<Column&>(std::as_const(*this).at(column)); }
  void checkRow(std::size_t row) const;

  std::vector<Column> columns_;
  std::size_t rowCount_ = 0;
  std::optional<std::size_t> chosen_;
};

}  // namespace velk
