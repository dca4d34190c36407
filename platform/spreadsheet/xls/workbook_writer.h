// Writes a workbook stream with one worksheet.
#pragma once

#include <string>

#include "platform/spreadsheet/xls/sheet_model.h"

namespace velk::xls {

/// The cells have to be arranged.
std::string writeWorkbook(const SheetModel& sheet);

}  // namespace velk::xls
