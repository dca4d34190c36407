// The part of a workbook stream before its sheets: what they share, and where each begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/spreadsheet/xls/sheet_contents.h"

namespace velk::xls {

/// Takes the record that a part of the stream begins with; answers the part's kind.
std::uint16_t beginSubstream(RecordReader& records);

/// Fills in texts, formats and whether the first worksheet is hidden, and answers where it begins.
/// Errors: as readWorkbook().
std::size_t readGlobals(std::string_view stream, SheetContents& contents);

}  // namespace velk::xls
