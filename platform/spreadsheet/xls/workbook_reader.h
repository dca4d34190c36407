// Reads a workbook stream.
#pragma once

#include <string_view>

#include "platform/spreadsheet/xls/sheet_contents.h"

namespace velk::xls {

/// The first worksheet. Of columns other than the wanted ones only the first row is kept.
///
/// Error 321 for a stream of an older version, one that is encrypted, damaged or has no worksheet.
/// Memory stays within a small multiple of the stream's length.
SheetContents readWorkbook(std::string_view stream, const ColumnSet& wanted);

}  // namespace velk::xls
