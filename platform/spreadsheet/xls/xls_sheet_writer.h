// The worksheet of a new workbook, kept in memory until it is saved.
#pragma once

#include <string_view>

#include "platform/files.h"
#include "platform/spreadsheet.h"
#include "platform/spreadsheet/xls/sheet_model.h"

namespace velk::xls {

class XlsSheetWriter final : public WorksheetWriter {
 public:
  explicit XlsSheetWriter(FileSystem& files) : files_(files) {}

  void setText(int row, int column, std::string_view text) override;
  void setBold(const CellRange& range) override;
  void addListValidation(const CellRange& range, const CellRange& source) override;
  void setColumnWidth(int number, double characters) override;
  void hideColumn(int number) override;
  void autoFit(int firstColumn, int lastColumn) override;
  /// Written beside the file and then put in its place, so that a failure leaves what was there.
  void saveAs(std::string_view path) override;

 private:
  SheetColumn& column(int number);
  void addBlanks(const CellRange& range);

  FileSystem& files_;
  SheetModel sheet_;
};

}  // namespace velk::xls
