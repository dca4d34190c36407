#include "platform/spreadsheet/xls/workbook_reader.h"

#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/xls/sheet_reader.h"
#include "platform/spreadsheet/xls/workbook_globals.h"

namespace velk::xls {

namespace {

void tellCells(const SheetContents& contents, SheetSink& sink) {
  for (const auto& row : contents.cells.rows()) {
    for (const Cell& cell : row) {
      const std::string text = contents.text(cell.row, cell.column);
      SheetCell told = contents.described(cell);
      told.text = text;
      if (!text.empty() || told.kind == SheetCell::Kind::NoResult) sink.cell(told);
    }
  }
}

}  // namespace

SheetContents readWorkbook(std::string_view stream, const ColumnSet& wanted) {
  SheetContents contents;
  const SheetEntry first = readGlobals(stream, contents).front();
  if (first.isHidden) contents.hiddenName = first.name;
  readSheet(stream, first.offset, wanted, contents);
  return contents;
}

void readWorkbook(std::string_view stream, SheetSink& sink) {
  SheetContents contents;
  for (const SheetEntry& sheet : readGlobals(stream, contents)) {
    contents.cells = {};
    contents.numbers.clear();
    contents.hiddenRows.reset();
    contents.hiddenColumns.reset();
    readSheet(stream, sheet.offset, ColumnSet().set(), contents);
    sink.sheet(sheet.name, sheet.isHidden);
    tellCells(contents, sink);
  }
}

}  // namespace velk::xls
