// Reads a workbook stream.
#pragma once

#include <string_view>

#include "platform/spreadsheet/sheet_sink.h"
#include "platform/spreadsheet/xls/sheet_contents.h"

namespace velk::xls {

/// The first worksheet. Of columns other than the wanted ones only the first row is kept.
///
/// Error 321 for a stream of an older version, one that is encrypted, damaged or has no worksheet.
/// Memory stays within a small multiple of the stream's length.
SheetContents readWorkbook(std::string_view stream, const ColumnSet& wanted);

/// All cells of all worksheets. The same errors; some may have been told before.
void readWorkbook(std::string_view stream, SheetSink& sink);

}  // namespace velk::xls
