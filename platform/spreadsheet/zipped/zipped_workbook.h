// Workbooks that are ZIP archives of XML documents: .xlsx and .ods.
//
// Everything is read in pieces, and nothing is looked up outside the archive: memory stays within a
// small multiple of the texts.
#pragma once

#include <string_view>

#include "platform/spreadsheet/sheet_sink.h"

namespace velk {

/// True for a file that begins as an archive does.
inline bool isZipped(std::string_view file) {
  return file.starts_with("PK\x03\x04");
}

/// All worksheets of a file. Error 321 for one that is no such workbook, is damaged or has a
/// password; some cells may have been told before.
void readZippedSheets(std::string_view file, SheetSink& sink);

}  // namespace velk
