// One worksheet of a workbook in any format, for what reads cell by cell.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/spreadsheet.h"

namespace velk {

/// Whether a screen's own reader finds that sheet: the first one of an .xls file, if none is named.
bool isForScreens(std::string_view file, const std::string& sheet);

/// The sheet of that name, or #N for the Nth; the first one if none is named. Error 321 as
/// readSheets(), and if there is no such sheet.
std::unique_ptr<WorksheetReader> readWorksheet(std::string_view file, const ColumnSet& wanted,
                                               const std::string& sheet);

}  // namespace velk
