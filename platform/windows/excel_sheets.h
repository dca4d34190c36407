// The worksheets of a workbook that the spreadsheet application has open.
#pragma once

#include <memory>

#include "platform/spreadsheet.h"
#include "platform/windows/excel_application.h"

namespace velk {

/// From the first cell of a sheet to the last one that has anything.
CellRange usedPart(const ExcelObject& sheet);

/// Asks for the cells in blocks, once they are needed; the answers are kept.
std::unique_ptr<WorksheetReader> excelSheetReader(ExcelWorkbook workbook);

/// Keeps the texts until they matter and hands them over in whole ranges.
std::unique_ptr<WorksheetWriter> excelSheetWriter(ExcelApplication& application,
                                                  ExcelWorkbook workbook);

}  // namespace velk
