// The part of a workbook stream before its sheets: what they share, and where each begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/xls/records.h"
#include "platform/spreadsheet/xls/sheet_contents.h"

namespace velk::xls {

/// Takes the record that a part of the stream begins with; answers the part's kind.
std::uint16_t beginSubstream(RecordReader& records);

struct SheetEntry {
  std::size_t offset;  ///< where it begins
  bool isWorksheet;
  bool isHidden;  ///< from users
  std::string name;
};

/// Fills in texts and formats, and answers the worksheets, one at least. Errors: as readWorkbook().
std::vector<SheetEntry> readGlobals(std::string_view stream, SheetContents& contents);

}  // namespace velk::xls
