#include "platform/spreadsheet/xls/sheet_data.h"

#include <algorithm>

namespace velk::xls {

namespace {

std::uint32_t place(const Cell& cell) {
  return static_cast<std::uint32_t>(cell.row) << 8U | cell.column;
}

bool samePlace(const Cell& a, const Cell& b) {
  return place(a) == place(b);
}

}  // namespace

void CellTable::add(const Cell& cell) {
  inOrder_ = inOrder_ && (cells_.empty() || place(cells_.back()) < place(cell));
  cells_.push_back(cell);
}

void CellTable::arrange() {
  if (!inOrder_) sort();
  index();
}

/// Rows by counting, so that most of the work is one pass, then each row by columns.
void CellTable::sort() {
  const auto byRow = [](const Cell& a, const Cell& b) { return a.row < b.row; };
  const auto byColumn = [](const Cell& a, const Cell& b) { return a.column < b.column; };
  std::vector<std::uint32_t> at(std::max_element(cells_.begin(), cells_.end(), byRow)->row + 2U);
  for (const Cell& cell : cells_) ++at[cell.row + 1U];
  for (std::size_t row = 1; row < at.size(); ++row) at[row] += at[row - 1];
  std::vector<Cell> sorted(cells_.size());
  for (const Cell& cell : cells_) sorted[at[cell.row]++] = cell;
  // Each entry is now where the next row begins.
  auto first = sorted.begin();
  for (const std::uint32_t end : at) {
    const auto last = sorted.begin() + end;
    if (!std::is_sorted(first, last, byColumn)) std::stable_sort(first, last, byColumn);
    first = last;
  }
  // Read backwards, the first of several at one place is the one that counts.
  const auto kept = std::unique(sorted.rbegin(), sorted.rend(), samePlace);
  sorted.erase(sorted.begin(), kept.base());
  cells_ = std::move(sorted);
}

void CellTable::index() {
  rowStarts_.assign(rowCount() + 1, 0);
  for (const Cell& cell : cells_) ++rowStarts_[cell.row + 1U];
  for (std::size_t row = 1; row < rowStarts_.size(); ++row) rowStarts_[row] += rowStarts_[row - 1];
}

const Cell* CellTable::find(std::size_t row, std::size_t column) const {
  if (row >= rowCount()) return nullptr;
  const Cell* const last = cells_.data() + rowStarts_[row + 1];
  const Cell* const found =
      std::lower_bound(cells_.data() + rowStarts_[row], last, column,
                       [](const Cell& cell, std::size_t wanted) { return cell.column < wanted; });
  return found != last && found->column == column ? found : nullptr;
}

}  // namespace velk::xls
