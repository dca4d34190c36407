// Worksheets of workbooks in any format, for screens that read cells themselves.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/spreadsheet.h"

namespace velk {

/// The sheet of that name, or #N for the Nth; the first one if none is named. Error 321 as
/// readSheets(), and if there is no such sheet.
std::unique_ptr<WorksheetReader> readWorksheet(std::string_view file, const ColumnSet& wanted,
                                               const std::string& sheet);

class AnySpreadsheet final : public Spreadsheet {
 public:
  AnySpreadsheet(FileSystem& files, std::string sheet) : files_(files), sheet_(std::move(sheet)) {}

  std::unique_ptr<WorksheetReader> open(std::string_view path, const ColumnSet& wanted) override;
  std::unique_ptr<WorksheetWriter> add() override;

 private:
  FileSystem& files_;
  std::string sheet_;
};

}  // namespace velk
