// Workbooks without a spreadsheet application: .xls files of version 97 and later (BIFF8 records in
// a compound file), read and written here.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/spreadsheet.h"
#include "platform/spreadsheet/sheet_sink.h"

namespace velk {

class XlsSpreadsheet final : public Spreadsheet {
 public:
  explicit XlsSpreadsheet(FileSystem& files) : files_(files) {}

  /// Files of 1 GB or more are error 7. Formulas show the result that was last saved.
  std::unique_ptr<WorksheetReader> open(std::string_view path, const ColumnSet& wanted) override;
  std::unique_ptr<WorksheetWriter> add() override;

 private:
  FileSystem& files_;
};

/// The same from a file's bytes.
std::unique_ptr<WorksheetReader> readXls(std::string_view file, const ColumnSet& wanted);

/// All worksheets of a file. Error 321 as open(); some cells may have been told before.
void readXlsSheets(std::string_view file, SheetSink& sink);

}  // namespace velk
