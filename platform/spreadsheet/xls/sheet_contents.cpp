#include "platform/spreadsheet/xls/sheet_contents.h"

#include "platform/spreadsheet/sheet_cells.h"

namespace velk::xls {

std::string SheetContents::text(std::size_t row, std::size_t column) const {
  const Cell* const cell = cells.find(row, column);
  if (cell == nullptr) return {};
  switch (cell->kind) {
    case Cell::Kind::Text:
      return std::string(texts[cell->value]);
    case Cell::Kind::Boolean:
      return std::string(booleanText(cell->value != 0));
    case Cell::Kind::Error:
      return std::string(cellErrorText(cell->value));
    case Cell::Kind::Blank:
    case Cell::Kind::NoResult:
      return {};
    case Cell::Kind::Number:
    case Cell::Kind::NoNumber:
      break;
  }
  const Number& number = numbers[cell->value];
  // A workbook without any formats of cells shows all in the general one.
  const std::size_t format = cellFormats.empty() ? 0 : cellFormats[number.cellFormat];
  return formats[format].text(number.value, from1904);
}

CellNature SheetContents::nature(std::size_t row, std::size_t column) const {
  const Cell* const cell = cells.find(row, column);
  if (cell == nullptr) return CellNature::Plain;
  switch (cell->kind) {
    case Cell::Kind::Error:
      return CellNature::Error;
    case Cell::Kind::NoResult:
    case Cell::Kind::NoNumber:
      return CellNature::NoResult;
    default:
      return CellNature::Plain;
  }
}

}  // namespace velk::xls
