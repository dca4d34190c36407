#include "ui/list_view.h"

#include <utility>

#include "base/errors.h"

namespace velk {

const ListView::Column& ListView::at(std::size_t column) const {
  if (column >= columns_.size()) throw RuntimeError(ErrorNumber::IndexOutOfBounds);
  return columns_[column];
}

void ListView::checkRow(std::size_t row) const {
  if (row < 1 || row > rowCount_) throw RuntimeError(ErrorNumber::IndexOutOfBounds);
}

void ListView::setTitle(std::size_t column, std::string_view title) {
  at(column).title = title;
  propertyChanged(Property::Columns);
}

void ListView::setWidth(std::size_t column, int width) {
  at(column).width = width;
  propertyChanged(Property::Columns);
}

void ListView::addColumn(std::string_view title, int width) {
  columns_.push_back({.title = std::string(title), .width = width, .written = {}, .cells = {}});
  propertyChanged(Property::Columns);
}

void ListView::clearColumns() {
  columns_.clear();
  chosen_.reset();
  propertyChanged(Property::Columns);
}

void ListView::clearRows() {
  for (Column& column : columns_) {
    column.written.clear();
    column.cells.reset();
  }
  rowCount_ = 0;
  propertyChanged(Property::Rows);
}

void ListView::addRows(std::size_t count) {
  rowCount_ += count;
  propertyChanged(Property::Rows);
}

// A cell written on its own hides the shared column's text at that row.
std::string_view ListView::cell(std::size_t row, std::size_t column) const {
  checkRow(row);
  const Column& c = at(column);
  if (const auto written = c.written.find(row); written != c.written.end()) {
    return written->second.text;
  }
  // Rows beyond the end of a shared column are empty.
  if (c.cells == nullptr || row < c.firstRow || row - c.firstRow >= c.cells->size()) return {};
  return (*c.cells)[row - c.firstRow];
}

bool ListView::isBold(std::size_t row, std::size_t column) const {
  checkRow(row);
  const auto& written = at(column).written;
  const auto found = written.find(row);
  // Texts of a shared column are never bold.
  return found != written.end() && found->second.bold;
}

void ListView::setCell(std::size_t row, std::size_t column, std::string_view text, bool bold) {
  checkRow(row);
  at(column).written.insert_or_assign(row, Cell{std::string(text), bold});
  propertyChanged(Property::Rows);
}

// The texts are shared and nothing is copied: mapping a column takes as long for 32,766 rows as for
// ten.
void ListView::setColumn(std::size_t column, std::size_t firstRow,
                         std::shared_ptr<const TextColumn> cells) {
  Column& c = at(column);
  // Cells written before would hide the new texts.
  c.written.erase(c.written.lower_bound(firstRow), c.written.end());
  c.cells = std::move(cells);
  c.firstRow = firstRow;
  propertyChanged(Property::Rows);
}

std::shared_ptr<const TextColumn> ListView::columnCells(std::size_t column) const {
  return at(column).cells;
}

void ListView::chooseColumn(std::optional<std::size_t> column) {
  if (column) at(*column);
  chosen_ = column;
  propertyChanged(Property::ChosenColumn);
}

bool ListView::hasEmptyCell(std::size_t column) const {
  for (std::size_t row = 1; row <= rowCount_; ++row) {
    if (cell(row, column).empty()) return true;
  }
  at(column);  // without rows, too, a column that does not exist is an error
  return false;
}

void ListView::userColumnClick(std::size_t column) {
  if (onColumnClick) raise([&] { onColumnClick(column); });
}

void ListView::userMouseUp(MouseButton button, int x) {
  if (onMouseUp) raise([&] { onMouseUp(button, x); });
}

void ListView::userColumnWidth(std::size_t column, int width) {
  // The window may still show a column that code has removed since.
  if (column < columns_.size()) columns_[column].width = width;
}

void ListView::userScroll(int left) {
  setQuietly(Property::ScrollLeft, left);
}

}  // namespace velk
