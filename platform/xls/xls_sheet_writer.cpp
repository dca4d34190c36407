#include "platform/xls/xls_sheet_writer.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/errors.h"
#include "platform/text.h"
#include "platform/xls/compound_writer.h"
#include "platform/xls/text_width.h"
#include "platform/xls/workbook_writer.h"

namespace velk::xls {

namespace {

constexpr std::size_t maxCellText = 32767;
constexpr double maxColumnWidth = 255;

void checkPlace(int row, int column) {
  if (row < 1 || row > maxSheetRows || column < 1 || column > maxSheetColumns) {
    throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
  }
}

/// From one-based to zero-based, its corners in order.
CellRange fileRange(const CellRange& range) {
  checkPlace(range.firstRow, range.firstColumn);
  checkPlace(range.lastRow, range.lastColumn);
  const auto [top, bottom] = std::minmax(range.firstRow, range.lastRow);
  const auto [left, right] = std::minmax(range.firstColumn, range.lastColumn);
  return {top - 1, left - 1, bottom - 1, right - 1};
}

/// Reads "=$IP$2:$IP$9".
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
      column = column * 26 + (text_[0] - 'A' + 1);
      if (column > maxSheetColumns) fail();
    }
    expect('$');
    const char* const end = text_.data() + text_.size();
    const auto [behind, failure] = std::from_chars(text_.data(), end, row);
    if (failure != std::errc()) fail();
    text_ = std::string_view(behind, static_cast<std::size_t>(end - behind));
  }

  std::string_view text_;
};

}  // namespace

void XlsSheetWriter::setText(int row, int column, std::string_view text) {
  checkPlace(row, column);
  if (text.size() > maxCellText && toUtf16(text).size() > maxCellText) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall, "The text is too long for a cell");
  }
  sheet_.cells.add({static_cast<std::uint16_t>(row - 1), static_cast<std::uint8_t>(column - 1),
                    text.empty() ? CellKind::Blank : CellKind::Text,
                    text.empty() ? 0 : sheet_.texts.add(text)});
}

void XlsSheetWriter::setBold(const CellRange& range) {
  sheet_.bold.push_back(fileRange(range));
  addBlanks(sheet_.bold.back());
}

/// A font needs a cell that has it: blank ones where there is none.
void XlsSheetWriter::addBlanks(const CellRange& range) {
  sheet_.cells.arrange();
  std::vector<Cell> blanks;
  for (int row = range.firstRow; row <= range.lastRow; ++row) {
    for (int column = range.firstColumn; column <= range.lastColumn; ++column) {
      const Cell blank{static_cast<std::uint16_t>(row), static_cast<std::uint8_t>(column),
                       CellKind::Blank, 0};
      if (sheet_.cells.find(blank.row, blank.column) == nullptr) blanks.push_back(blank);
    }
  }
  for (const Cell& blank : blanks) sheet_.cells.add(blank);
}

void XlsSheetWriter::addListValidation(const CellRange& range, std::string_view source) {
  sheet_.validations.push_back({fileRange(range), fileRange(SourceReader(source).read())});
}

SheetColumn& XlsSheetWriter::column(int number) {
  checkPlace(1, number);
  return sheet_.columns[number - 1];
}

void XlsSheetWriter::setColumnWidth(int number, double characters) {
  if (!(characters >= 0 && characters <= maxColumnWidth)) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  }
  column(number).width = characters;
}

void XlsSheetWriter::hideColumn(int number) {
  column(number).hidden = true;
}

void XlsSheetWriter::autoFit(int firstColumn, int lastColumn) {
  const CellRange range = fileRange({1, firstColumn, 1, lastColumn});
  std::array<double, maxSheetColumns> widths{};
  sheet_.cells.arrange();
  for (const Cell& cell : sheet_.cells.cells()) {
    if (cell.column < range.firstColumn || cell.column > range.lastColumn) continue;
    if (cell.kind == CellKind::Blank) continue;
    const double width = textWidth(sheet_.texts.texts()[cell.value], sheet_.isBold(cell));
    widths[cell.column] = std::max(widths[cell.column], std::min(width, maxColumnWidth));
  }
  for (int number = range.firstColumn; number <= range.lastColumn; ++number) {
    const double width = widths[static_cast<std::size_t>(number)];
    if (width > 0) column(number + 1).width = width;
  }
}

void XlsSheetWriter::saveAs(std::string_view path) {
  sheet_.cells.arrange();
  const auto file = files_.openReplacement(path);
  writeCompoundFile(*file, writeWorkbook(sheet_));
  file->close();
}

}  // namespace velk::xls
