#include "platform/spreadsheet/xls/sheet_contents.h"

#include "platform/spreadsheet/sheet_cells.h"

namespace velk::xls {

namespace {

CellNature natureOf(const Cell& cell) {
  switch (cell.kind) {
    case Cell::Kind::Error:
      return CellNature::Error;
    case Cell::Kind::NoResult:
    case Cell::Kind::NoNumber:
      return CellNature::NoResult;
    default:
      return CellNature::Plain;
  }
}

}  // namespace

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
  return formatOf(number).text(number.value, from1904);
}

// A workbook without any formats of cells shows all in the general one.
const NumberFormat& SheetContents::formatOf(const Number& number) const {
  return formats[cellFormats.empty() ? 0 : cellFormats[number.cellFormat]];
}

SheetCell SheetContents::described(const Cell& cell) const {
  SheetCell told{cell.row + 1U, cell.column + 1U};
  told.isHidden = hiddenRows.test(cell.row) || hiddenColumns.test(cell.column);
  if (cell.kind == Cell::Kind::Number) {
    const Number& number = numbers[cell.value];
    setNumber(told, number.value, formatOf(number), from1904);
  } else if (const CellNature found = natureOf(cell); found != CellNature::Plain) {
    told.kind = found == CellNature::Error ? SheetCell::Kind::Error : SheetCell::Kind::NoResult;
  }
  return told;
}

CellNature SheetContents::nature(std::size_t row, std::size_t column) const {
  const Cell* const cell = cells.find(row, column);
  return cell == nullptr ? CellNature::Plain : natureOf(*cell);
}

}  // namespace velk::xls
