#include "apps/host/table_list.h"

#include <algorithm>
#include <climits>
#include <numeric>

#include "platform/windows/wide_text.h"

namespace velk {

namespace {

// So many rows decide how wide a column is; a longer table has more of the same.
constexpr std::size_t measuredRows = 1000;

}  // namespace

void TableList::attach(HWND list, int padding) {
  list_ = list;
  padding_ = padding;
}

void TableList::showColumns(std::span<const TableColumn> columns) {
  SendMessageW(list_, LVM_SETITEMCOUNT, 0, 0);
  given_.clear();
  rows_.clear();
  titles_.clear();
  // One by one, because a list has no message that removes all its columns.
  while (SendMessageW(list_, LVM_DELETECOLUMN, 0, 0) != FALSE) {
  }
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_FMT;
  for (const TableColumn& shown : columns) {
    std::wstring& title = titles_.emplace_back(toWide(shown.title));
    column.pszText = title.data();
    column.fmt = shown.kind == ColumnKind::Amount ? LVCFMT_RIGHT : LVCFMT_LEFT;
    SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column.iSubItem),
                 reinterpret_cast<LPARAM>(&column));
    ++column.iSubItem;
  }
  fitColumns();
}

void TableList::showRows(const std::vector<TableRow>& rows) {
  if (rows == given_) return;
  given_ = rows;
  rows_.clear();
  for (const TableRow& row : rows) {
    WideRow& wide = rows_.emplace_back();
    for (const std::string& cell : row) wide.push_back(toWide(cell));
  }
  SendMessageW(list_, LVM_SETITEMCOUNT, rows_.size(), 0);
  fitColumns();
  InvalidateRect(list_, nullptr, TRUE);
}

// The text lives here, because what the list has room for would cut a long line of the error log.
void TableList::giveText(LVITEMW& item) const {
  static wchar_t nothing[] = L"";
  if ((item.mask & LVIF_TEXT) == 0) return;
  const auto row = static_cast<std::size_t>(item.iItem);
  const auto column = static_cast<std::size_t>(item.iSubItem);
  const bool isThere = row < rows_.size() && column < rows_[row].size();
  // The list only reads it.
  item.pszText = isThere ? const_cast<wchar_t*>(rows_[row][column].c_str()) : nothing;
}

// What the widest texts leave of the list is shared out, so that a small table fills it, too.
void TableList::fitColumns() const {
  if (titles_.empty()) return;
  std::vector<int> widths;
  for (const std::wstring& title : titles_) widths.push_back(widthOf(title));
  for (const WideRow& row : std::span(rows_).first(std::min(rows_.size(), measuredRows))) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], widthOf(row[i]));
  }
  RECT inside;
  GetWindowRect(list_, &inside);
  // Less the vertical scroll bar, with which a horizontal one would appear, and the border.
  const int room = static_cast<int>(inside.right - inside.left) - GetSystemMetrics(SM_CXVSCROLL) -
                   2 * GetSystemMetrics(SM_CXEDGE);
  const int left = room - std::accumulate(widths.begin(), widths.end(), 0);
  const int share = std::max(0, left / static_cast<int>(widths.size()));
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const int width = std::min(widths[i] + share, SHRT_MAX);  // the message has 16 bits for it
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, i, MAKELPARAM(width, 0));
  }
}

int TableList::widthOf(const std::wstring& text) const {
  return padding_ + static_cast<int>(SendMessageW(list_, LVM_GETSTRINGWIDTHW, 0,
                                                  reinterpret_cast<LPARAM>(text.c_str())));
}

}  // namespace velk
