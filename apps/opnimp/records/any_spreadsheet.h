// The spreadsheet of a screen that reads cells itself: what the screen cannot read, the runner has
// read for it.
#pragma once

#include <memory>
#include <string_view>

#include "apps/opnimp/records/workbook_records.h"
#include "platform/files.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"

namespace velk {

class AnySpreadsheet final : public Spreadsheet {
 public:
  /// `read`: whose sheet is opened in the place of any file, and which live as long; null: each
  /// file is read.
  AnySpreadsheet(FileSystem& files, const WorkbookRecords* read) : xls_(files), read_(read) {}

  std::unique_ptr<WorksheetReader> open(std::string_view path, const ColumnSet& wanted) override;
  std::unique_ptr<WorksheetWriter> add() override { return xls_.add(); }

 private:
  XlsSpreadsheet xls_;
  const WorkbookRecords* read_;
};

}  // namespace velk
