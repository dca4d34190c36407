// Workbooks of any format: .xls, .xlsx or .ods, told by their bytes.
#pragma once

#include <string_view>

#include "apps/opnimp/sheets/sheet_set.h"

namespace velk {

bool isWorkbookFile(std::string_view file);

/// Reads them in a process of its own, with little memory and time. Error 321 for a file that is no
/// readable workbook; its description is a sentence.
SheetSet readSheets(std::string_view file);

}  // namespace velk
