// From the bytes of a file to the stream with its workbook.
#pragma once

#include <string>
#include <string_view>

namespace velk::xls {

/// Error 321 for every other file, with a description that says what it is: empty, a text, a web
/// page, an .xlsx or .ods workbook, a workbook older than version 97 or with a password, another
/// document, a damaged workbook.
std::string workbookStream(std::string_view file);

}  // namespace velk::xls
