#include "apps/opnimp/sheets/read_worksheet.h"

#include <utility>

#include "apps/opnimp/sheets/read_sheets.h"
#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/spreadsheet/zipped/zipped_workbook.h"

namespace velk {

namespace {

class SheetReader final : public WorksheetReader {
 public:
  SheetReader(SheetSet set, const Sheet& sheet, bool isChosen)
      : set_(std::move(set)), sheet_(sheet), isChosen_(isChosen) {}

  int rowCount() const override {
    return sheet_.cells.empty() ? 0 : static_cast<int>(sheet_.cells.back().row);
  }
  std::string text(int row, int column) const override {
    const SheetCell* const cell = at(row, column);
    return cell == nullptr ? std::string() : std::string(cell->text);
  }
  CellNature nature(int row, int column) const override {
    const SheetCell* const cell = at(row, column);
    if (cell == nullptr) return CellNature::Plain;
    if (cell->kind == SheetCell::Kind::Error) return CellNature::Error;
    return cell->kind == SheetCell::Kind::NoResult ? CellNature::NoResult : CellNature::Plain;
  }
  std::string hiddenName() const override {
    return sheet_.isHidden && !isChosen_ ? sheet_.name : "";
  }

 private:
  const SheetCell* at(int row, int column) const {
    return sheet_.find(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
  }

  SheetSet set_;
  const Sheet& sheet_;  // of the set, whose sheets stay where they are when it is moved
  bool isChosen_;       // by the user, who knows whether it is hidden
};

}  // namespace

bool isForScreens(std::string_view file, const std::string& sheet) {
  return !isZipped(file) && sheet.empty();
}

std::unique_ptr<WorksheetReader> readWorksheet(std::string_view file, const ColumnSet& wanted,
                                               const std::string& sheet) {
  if (isForScreens(file, sheet)) return readXls(file, wanted);
  SheetSet set = readSheets(file);
  const Sheet* const found = sheet.empty() ? &set.sheets.front() : findSheet(set, sheet);
  if (found == nullptr) refuse(noSuchSheet(set, sheet));
  return std::make_unique<SheetReader>(std::move(set), *found, !sheet.empty());
}

}  // namespace velk
