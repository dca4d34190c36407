// The part of a workbook stream that is a worksheet: its cells.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/spreadsheet/xls/sheet_contents.h"

namespace velk::xls {

/// Adds the cells of the sheet that begins at a place of the stream. Errors: as readWorkbook().
void readSheet(std::string_view stream, std::size_t at, const ColumnSet& wanted,
               SheetContents& contents);

}  // namespace velk::xls
