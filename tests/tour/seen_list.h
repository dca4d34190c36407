// What report lists of another program show. Rows and columns count from 0.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace velk {

std::wstring cellText(HWND list, int row, int column);
int rowCount(HWND list);
/// In the middle of a column's header, and of a cell, on the display.
POINT headerPoint(HWND list, int column);
POINT cellPoint(HWND list, int row, int column);
std::vector<std::wstring> columnTitles(HWND list);
/// Error 5 when no column has this title.
int columnTitled(HWND list, std::wstring_view title);

}  // namespace velk
