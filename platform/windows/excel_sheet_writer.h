// The worksheet of a workbook that was made in the spreadsheet application.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet.h"
#include "platform/windows/excel_application.h"

namespace velk {

/// Keeps the texts until they matter and hands them over in whole ranges.
class ExcelSheetWriter final : public WorksheetWriter {
 public:
  ExcelSheetWriter(ExcelApplication& application, ExcelWorkbook workbook);

  void setText(int row, int column, std::string_view text) override;
  void setBold(const CellRange& range) override;
  void addListValidation(const CellRange& range, const CellRange& source) override;
  void setColumnWidth(int number, double characters) override;
  void hideColumn(int number) override;
  void autoFit(int firstColumn, int lastColumn) override;
  void saveAs(std::string_view path) override;

 private:
  struct Column {
    std::vector<std::string> texts;  ///< from row 1 on
    int firstNew = 0;                ///< rows not handed over yet; 0: none
    int lastNew = 0;
  };

  ExcelObject rangeObject(const CellRange& range) const;
  ExcelObject columns(int first, int last) const;
  void writeTexts();
  void write(int number, const Column& column, int firstRow, int lastRow) const;
  void writeAlone(int row, int column, const std::string& text) const;
  std::string sourceAsSpelled(std::string_view source) const;
  int fileFormat() const;

  ExcelApplication& application_;
  ExcelWorkbook workbook_;
  ExcelObject sheet_;
  std::map<int, Column> columns_;
};

}  // namespace velk
