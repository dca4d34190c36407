#include "platform/spreadsheet/xls/xls_sheet_writer.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/spreadsheet/sheet_cells.h"
#include "platform/spreadsheet/xls/compound_writer.h"
#include "platform/spreadsheet/xls/sheet_model.h"
#include "platform/spreadsheet/xls/text_width.h"
#include "platform/spreadsheet/xls/workbook_writer.h"

namespace velk::xls {

namespace {

/// From one-based to zero-based, its corners in order.
CellRange fileRange(const CellRange& range) {
  const CellRange checked = checkedRange(range);
  return {checked.firstRow - 1, checked.firstColumn - 1, checked.lastRow - 1,
          checked.lastColumn - 1};
}

class XlsSheetWriter final : public XlsSheet {
 public:
  explicit XlsSheetWriter(FileSystem& files) : files_(files) {}

  void setText(int row, int column, std::string_view text) override {
    checkCell(row, column);
    checkCellText(text);
    // An empty text is added, too: it replaces an earlier text of the cell.
    sheet_.cells.add({static_cast<std::uint16_t>(row - 1), static_cast<std::uint8_t>(column - 1),
                      text.empty() ? Cell::Kind::Blank : Cell::Kind::Text,
                      text.empty() ? 0 : sheet_.texts.add(text)});
  }

  void setBold(const CellRange& range) override {
    sheet_.bold.push_back(fileRange(range));
    addBlanks(sheet_.bold.back());
  }

  void addListValidation(const CellRange& range, const CellRange& source) override {
    sheet_.validations.push_back({fileRange(range), fileRange(checkedListSource(source))});
  }

  void setColumnWidth(int number, double characters) override {
    checkColumnWidth(characters);
    column(number).width = characters;
  }

  void hideColumn(int number) override { column(number).hidden = true; }
  void setTextColumn(int number) override { column(number).text = true; }

  void autoFit(int firstColumn, int lastColumn) override {
    const CellRange range = fileRange({1, firstColumn, 1, lastColumn});
    std::array<double, maxSheetColumns> widths{};
    for (const auto& row : sheet_.cells.rows()) {
      for (const Cell& cell : row) {
        if (cell.column < range.firstColumn || cell.column > range.lastColumn) continue;
        if (cell.kind == Cell::Kind::Blank) continue;
        const double width = widthInDigits(sheet_.texts.texts()[cell.value], sheet_.isBold(cell));
        widths[cell.column] = std::max(widths[cell.column], std::min(width, maxColumnWidth));
      }
    }
    for (int number = range.firstColumn; number <= range.lastColumn; ++number) {
      const double width = widths[static_cast<std::size_t>(number)];
      // A column without texts keeps its width.
      if (width > 0) column(number + 1).width = width;
    }
  }

  WorksheetWriter& addSheet(std::string name) override {
    further_.push_back(std::make_unique<XlsSheetWriter>(files_));
    further_.back()->sheet_.name = std::move(name);
    return *further_.back();
  }

  /// Written beside the file and then put in its place, so that a failure leaves what was there.
  void saveAs(std::string_view path) override {
    // A replacement: the old file stays until the new one is complete.
    const auto file = files_.openReplacement(path);
    std::vector<const SheetModel*> sheets{&sheet_};
    for (const auto& further : further_) sheets.push_back(&further->sheet_);
    writeCompoundFile(*file, writeWorkbook(sheets));
    file->close();
  }

 private:
  SheetColumn& column(int number) {
    checkCell(1, number);
    return sheet_.columns[number - 1];
  }

  /// A font needs a cell that has it: blank ones where there is none.
  void addBlanks(const CellRange& range) {
    for (int row = range.firstRow; row <= range.lastRow; ++row) {
      for (int column = range.firstColumn; column <= range.lastColumn; ++column) {
        const Cell blank{static_cast<std::uint16_t>(row), static_cast<std::uint8_t>(column),
                         Cell::Kind::Blank, 0};
        if (sheet_.cells.find(blank.row, blank.column) == nullptr) sheet_.cells.add(blank);
      }
    }
  }

  FileSystem& files_;
  SheetModel sheet_;
  std::vector<std::unique_ptr<XlsSheetWriter>> further_;
};

}  // namespace

std::unique_ptr<XlsSheet> newXlsSheet(FileSystem& files) {
  return std::make_unique<XlsSheetWriter>(files);
}

}  // namespace velk::xls
