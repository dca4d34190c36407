// From the bytes of a file to the stream with its workbook.
#pragma once

#include <string_view>

#include "platform/spreadsheet/xls/compound_file.h"

namespace velk::xls {

/// The file has to live as long as the stream. Error 321 for every other file, with a description
/// that says what it is: empty, a text, a web page, an .xlsx or .ods workbook, a workbook older
/// than version 97 or with a password, another document, a damaged workbook.
StreamBytes workbookStream(std::string_view file);

}  // namespace velk::xls
