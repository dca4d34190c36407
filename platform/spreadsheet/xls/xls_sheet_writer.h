// The worksheets of a new workbook, kept in memory until it is saved.
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace velk::xls {

class XlsSheet : public WorksheetWriter {
 public:
  /// A further worksheet, which is saved with this one and lives as long. `name`: at most 31
  /// characters of ASCII.
  virtual WorksheetWriter& addSheet(std::string name) = 0;
};

std::unique_ptr<XlsSheet> newXlsSheet(FileSystem& files);

}  // namespace velk::xls
