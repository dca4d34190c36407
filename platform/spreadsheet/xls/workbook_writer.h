// Writes a workbook stream.
#pragma once

#include <span>
#include <string>

#include "platform/spreadsheet/xls/sheet_model.h"

namespace velk::xls {

/// With one worksheet or more, the first of them selected.
std::string writeWorkbook(std::span<const SheetModel* const> sheets);

}  // namespace velk::xls
