// The list that shows a table: each column as wide as what it shows.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <span>
#include <string>
#include <vector>

#include "apps/host/company_tables.h"

namespace velk {

class TableList {
 public:
  /// `list` is a virtual report list, which outlives this; `padding` is the room, in pixels, that a
  /// column has beside its text.
  void attach(HWND list, int padding);

  /// Begins a table, without rows.
  void showColumns(std::span<const TableColumn> columns);
  /// Rows that are shown already change nothing: scroll position and widths stay the user's.
  void showRows(const std::vector<TableRow>& rows);
  std::size_t rowCount() const { return rows_.size(); }

  /// Answers the list's question for the text of a cell that it paints.
  void giveText(LVITEMW& item) const;

 private:
  using WideRow = std::vector<std::wstring>;

  void fitColumns() const;
  int widthOf(const std::wstring& text) const;

  HWND list_ = nullptr;
  int padding_ = 0;
  std::vector<std::wstring> titles_;
  std::vector<TableRow> given_;
  std::vector<WideRow> rows_;
};

}  // namespace velk
