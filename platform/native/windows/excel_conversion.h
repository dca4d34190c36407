// Workbooks of other formats, saved as .xls by the installed spreadsheet application.
#pragma once

#include <string_view>

namespace velk {

/// False when no application is registered. Error 321 for a sheet that is larger than an .xls file
/// can hold, since that would be cut off; else the application's own.
bool saveAsXls(std::string_view from, std::string_view to);

}  // namespace velk
