#include "platform/spreadsheet/xls/workbook_reader.h"

#include "platform/spreadsheet/xls/damage.h"
#include "platform/spreadsheet/xls/sheet_reader.h"
#include "platform/spreadsheet/xls/workbook_globals.h"

namespace velk::xls {

SheetContents readWorkbook(std::string_view stream, const ColumnSet& wanted) {
  SheetContents contents;
  const std::size_t sheet = readGlobals(stream, contents);
  readSheet(stream, sheet, wanted, contents);
  return contents;
}

}  // namespace velk::xls
