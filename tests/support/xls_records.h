// What a workbook contains, record by record.
#pragma once

#include <string_view>

#include "platform/spreadsheet/xls/records.h"
#include "platform/spreadsheet/xls/xls_file.h"
#include "tests/support/checks.h"

namespace velk::xls {

/// The payloads of the records of a kind, in the globals and the first sheet of an .xls file.
inline Texts recordsOf(std::string_view file, Record wanted) {
  const StreamBytes stream = workbookStream(file);
  Texts found;
  RecordReader reader(stream.view(), 0);
  for (int ends = 0; ends < 2; ends += reader.type() == Record::Eof ? 1 : 0) {
    reader.next();
    if (reader.type() == wanted) found.emplace_back(reader.payload());
  }
  return found;
}

}  // namespace velk::xls
