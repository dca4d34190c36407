#include "platform/native/windows/excel_conversion.h"

#include "base/numbers.h"
#include "platform/spreadsheet/damage.h"
#include "platform/windows/excel_sheets.h"

namespace velk {

namespace {

void requireRoom(const ExcelObject& sheet) {
  const CellRange used = usedPart(sheet);
  if (used.lastRow <= maxSheetRows && used.lastColumn <= maxSheetColumns) return;
  refuse("A worksheet has more than 65,536 rows or 256 columns, which are not read here; split it");
}

}  // namespace

bool saveAsXls(std::string_view from, std::string_view to) {
  ComPtr<IDispatch> installed = startExcel();
  if (!installed) return false;
  const ExcelApplication application(std::move(installed));
  application.askNothing();
  ExcelWorkbook workbook = application.openReadOnly(from);
  const ExcelObject sheets = workbook.object().object("Worksheets");
  const double count = leadingNumber(toText(toValue(sheets.get("Count").get())));
  for (int i = 1; i <= count; ++i) requireRoom(workbook.object().object("Worksheets", i));
  workbook.object().call("SaveAs", to, application.xlsFormat());
  // An open file cannot be read by others.
  workbook.close();
  return true;
}

}  // namespace velk
