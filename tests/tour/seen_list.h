// What lists of another program show: report lists and those of boxes. Rows and columns count from
// 0.
#pragma once

#include <windows.h>
#include <string>

#include <string_view>
#include <vector>

namespace velk {

/// Those of the first rows of a column.
std::vector<std::wstring> cellTexts(HWND list, int column, int rows);
int rowCount(HWND list);
/// In the middle of a column's header, and of a cell, on the display.
POINT headerPoint(HWND list, int column);
POINT cellPoint(HWND list, int row, int column);
/// The parts of a combo box. Error 5 when it does not tell them.
COMBOBOXINFO partsOf(HWND box);
/// In pixels: a text in the list's font, and a column.
int textWidth(HWND list, std::wstring_view text);
int columnWidth(HWND list, int column);
std::vector<std::wstring> columnTitles(HWND list);
/// Error 5 when no column has this title.
int columnTitled(HWND list, std::wstring_view title);

}  // namespace velk
