#include "tests/tour/seen_list.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "platform/windows/wide_text.h"
#include "tests/tour/foreign_structure.h"
#include "tests/tour/seen_windows.h"

namespace velk {

namespace {

/// A structure that points to a text, followed by room for the text.
template <class Structure>
struct WithText {
  Structure structure;
  std::array<wchar_t, 1024> text;
};

template <class Structure>
// Again before each question, because a list may point to a text of its own instead.
void giveRoom(ForeignStructure<WithText<Structure>>& of) {
  of.copy.structure.pszText = of.there()->text.data();
  of.copy.structure.cchTextMax = static_cast<int>(of.copy.text.size());
}

}  // namespace

std::vector<std::wstring> cellTexts(HWND list, int column, int rows) {
  ForeignStructure<WithText<LVITEMW>> cell(list);
  std::vector<std::wstring> texts;
  for (int row = 0; row < rows; ++row) {
    cell.copy.structure.iSubItem = column;
    giveRoom(cell);
    cell.send(LVM_GETITEMTEXTW, static_cast<WPARAM>(row));
    texts.emplace_back(cell.copy.text.data());
  }
  return texts;
}

int rowCount(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

POINT headerPoint(HWND list, int column) {
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  ForeignStructure<RECT> area(header);
  area.send(HDM_GETITEMRECT, static_cast<WPARAM>(column));
  return middleOf(area.copy, header);
}

POINT cellPoint(HWND list, int row, int column) {
  ForeignStructure<RECT> area(list);
  area.copy.top = column;  // the question's form: column and part, in place of an area
  area.copy.left = LVIR_LABEL;
  area.send(LVM_GETSUBITEMRECT, static_cast<WPARAM>(row));
  return middleOf(area.copy, list);
}

COMBOBOXINFO partsOf(HWND box) {
  ForeignStructure<COMBOBOXINFO> parts(box);
  parts.copy.cbSize = sizeof parts.copy;
  if (parts.send(CB_GETCOMBOBOXINFO, 0) == FALSE) notThere("the parts of a box");
  return parts.copy;
}

int textWidth(HWND list, std::wstring_view text) {
  ForeignStructure<std::array<wchar_t, 1024>> there(list);
  there.copy[text.copy(there.copy.data(), there.copy.size() - 1)] = L'\0';
  return static_cast<int>(there.send(LVM_GETSTRINGWIDTHW, 0));
}

int columnWidth(HWND list, int column) {
  return static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

// A list does not tell how many columns it has: they end where it knows no more.
std::vector<std::wstring> columnTitles(HWND list) {
  std::vector<std::wstring> titles;
  ForeignStructure<WithText<LVCOLUMNW>> column(list);
  column.copy.structure.mask = LVCF_TEXT;
  giveRoom(column);
  while (column.send(LVM_GETCOLUMNW, titles.size()) != FALSE) {
    titles.emplace_back(column.copy.text.data());
    giveRoom(column);
  }
  return titles;
}

int columnTitled(HWND list, std::wstring_view title) {
  const auto titles = columnTitles(list);
  const auto found = std::ranges::find(titles, title);
  if (found == titles.end()) notThere("the column " + fromWide(title));
  return static_cast<int>(found - titles.begin());
}

}  // namespace velk
