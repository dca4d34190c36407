// Cells of a worksheet: what every realization of the spreadsheet checks of them, and their names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/spreadsheet.h"

namespace velk {

inline constexpr double maxColumnWidth = 255;

/// Error 9 for a cell outside the grid.
void checkCell(int row, int column);
/// The range with its corners in order; error 9 when one is outside the grid.
CellRange checkedRange(const CellRange& range);
/// The same for the source of a list; error 5 when it has more than one column.
CellRange checkedListSource(const CellRange& source);
/// Error 5 for a text that is too long for a cell.
void checkCellText(std::string_view text);
/// Error 5 for a width that no column can have.
void checkColumnWidth(double characters);

/// "A" for 1, "AA" for 27.
std::string columnLetters(std::size_t column);
/// "A1:H1"; "A1:A1" for a single cell.
std::string rangeName(const CellRange& range);
/// "$A$1:$H$1".
std::string absoluteRangeName(const CellRange& range);

/// How a cell shows a boolean, and an error of that code in the .xls format.
std::string_view booleanText(bool value);
std::string_view cellErrorText(std::uint32_t code);

}  // namespace velk
