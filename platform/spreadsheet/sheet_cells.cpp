#include "platform/spreadsheet/sheet_cells.h"

#include <algorithm>
#include <utility>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

// The limit of the .xls format, in UTF-16 units.
constexpr std::size_t maxCellText = 32767;

/// `fixed` precedes both parts of the name: "$" for one that is absolute.
std::string cellName(int row, int column, const char* fixed) {
  return fixed + columnLetters(static_cast<std::size_t>(column)) + fixed + std::to_string(row);
}

std::string rangeName(const CellRange& range, const char* fixed) {
  return cellName(range.firstRow, range.firstColumn, fixed) + ':' +
         cellName(range.lastRow, range.lastColumn, fixed);
}

}  // namespace

std::string columnLetters(std::size_t column) {
  constexpr std::size_t letters = 26;
  std::string name;
  for (; column > 0; column = (column - 1) / letters) {
    name.insert(name.begin(), static_cast<char>('A' + (column - 1) % letters));
  }
  return name;
}

void checkCell(int row, int column) {
  if (row < 1 || row > maxSheetRows || column < 1 || column > maxSheetColumns) {
    throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  }
}

CellRange checkedRange(const CellRange& range) {
  checkCell(range.firstRow, range.firstColumn);
  checkCell(range.lastRow, range.lastColumn);
  const auto [top, bottom] = std::minmax(range.firstRow, range.lastRow);
  const auto [left, right] = std::minmax(range.firstColumn, range.lastColumn);
  return {top, left, bottom, right};
}

void checkCellText(std::string_view text) {
  // UTF-8 is never shorter than UTF-16, so most texts need no conversion.
  if (text.size() > maxCellText && toUtf16(text).size() > maxCellText) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall, "The text is too long for a cell");
  }
}

void checkColumnWidth(double characters) {
  // Written so that NaN is refused, too.
  if (!(characters >= 0 && characters <= maxColumnWidth)) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  }
}

CellRange checkedListSource(const CellRange& source) {
  if (source.firstColumn != source.lastColumn) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  }
  return checkedRange(source);
}

std::string rangeName(const CellRange& range) {
  return rangeName(range, "");
}

std::string absoluteRangeName(const CellRange& range) {
  return rangeName(range, "$");
}

std::string_view booleanText(bool value) {
  return value ? "TRUE" : "FALSE";
}

std::string_view cellErrorText(std::uint32_t code) {
  constexpr std::pair<std::uint32_t, std::string_view> errors[] = {
      {0x00, "#NULL!"}, {0x07, "#DIV/0!"}, {0x0F, "#VALUE!"},
      {0x17, "#REF!"},  {0x1D, "#NAME?"},  {0x24, "#NUM!"}};
  // The code of #N/A, 0x2A, is not listed: unknown codes show as this, too.
  for (const auto& [number, text] : errors) {
    if (number == code) return text;
  }
  return "#N/A";
}

}  // namespace velk
