#include "platform/spreadsheet/sheet_cells.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

// The limit of the .xls format, in UTF-16 units.
constexpr std::size_t maxCellText = 32767;
constexpr int lettersOfNames = 26;

class SourceReader {
 public:
  explicit SourceReader(std::string_view text) : text_(text) {}

  CellRange read() {
    CellRange range{};
    expect('=');
    readCell(range.firstRow, range.firstColumn);
    expect(':');
    readCell(range.lastRow, range.lastColumn);
    if (!text_.empty() || range.firstColumn != range.lastColumn) fail();
    return range;
  }

 private:
  [[noreturn]] static void fail() { throw RuntimeError(ErrorNumber::InvalidProcedureCall); }

  void expect(char mark) {
    if (!text_.starts_with(mark)) fail();
    text_.remove_prefix(1);
  }

  void readCell(int& row, int& column) {
    expect('$');
    for (; !text_.empty() && text_[0] >= 'A' && text_[0] <= 'Z'; text_.remove_prefix(1)) {
      column = column * lettersOfNames + (text_[0] - 'A' + 1);
      if (column > maxSheetColumns) fail();  // before a long name overflows
    }
    expect('$');
    const char* const end = text_.data() + text_.size();
    // Rows beyond the sheet are refused by checkedRange, which each caller uses.
    const auto [behind, failure] = std::from_chars(text_.data(), end, row);
    if (failure != std::errc()) fail();
    text_ = std::string_view(behind, static_cast<std::size_t>(end - behind));
  }

  std::string_view text_;
};

std::string cellName(int row, int column) {
  std::string name;
  // Two letters reach column 702, more than a sheet has.
  if (column > lettersOfNames) name += static_cast<char>('A' + (column - 1) / lettersOfNames - 1);
  name += static_cast<char>('A' + (column - 1) % lettersOfNames);
  return name + std::to_string(row);
}

}  // namespace

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

CellRange listSource(std::string_view source) {
  return SourceReader(source).read();
}

std::string rangeName(const CellRange& range) {
  return cellName(range.firstRow, range.firstColumn) + ':' +
         cellName(range.lastRow, range.lastColumn);
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
