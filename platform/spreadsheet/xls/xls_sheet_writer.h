// The worksheet of a new workbook, kept in memory until it is saved.
#pragma once

#include <memory>

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace velk::xls {

std::unique_ptr<WorksheetWriter> newXlsSheet(FileSystem& files);

}  // namespace velk::xls
