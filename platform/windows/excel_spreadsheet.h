// The installed spreadsheet application, by automation of its class "Excel.Application".
#pragma once

#include <memory>

#include "platform/spreadsheet.h"

namespace velk {

/// Starts the application; null when none is registered, error 429 when it does not start. It asks
/// no questions: no alerts, no macros, no passwords. A sheet that was saved is closed: writing to
/// it is error 91.
std::unique_ptr<Spreadsheet> createExcelSpreadsheet();

}  // namespace velk
