#include "platform/windows/excel_sheets.h"

#include <algorithm>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "base/numbers.h"
#include "platform/spreadsheet/sheet_cells.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr int rowsAtOnce = 4096;  // a range of texts is built in memory before it is sent

/// Whether a text has to be written by itself: arrays lose texts of more than 911 characters in old
/// versions, and an apostrophe at the beginning may be taken for a mark that a text follows.
bool travelsAlone(const std::string& text) {
  constexpr std::size_t maxInArray = 911;
  return text.size() > maxInArray || text.starts_with('\'');
}

/// Texts below each other, as the value of a range of one column.
Variant columnValue(std::span<const std::string> texts) {
  // Two dimensions, because a range takes a table, even one of a single column.
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(texts.size()), 1}, {1, 1}};
  Variant value;
  SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (array == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  VARIANT* const held = value.receive();
  held->vt = VT_ARRAY | VT_VARIANT;
  held->parray = array;
  auto* element = static_cast<VARIANT*>(array->pvData);
  // An element that is left out stays VT_EMPTY, as SafeArrayCreate makes it.
  for (const std::string& text : texts) {
    if (!text.empty() && !travelsAlone(text)) *element = Variant(Value(text)).release();
    ++element;
  }

  return value;
}

class ExcelSheetWriter final : public WorksheetWriter {
 public:
  ExcelSheetWriter(ExcelApplication& application, ExcelWorkbook workbook)
      : application_(application), workbook_(std::move(workbook)), sheet_(workbook_.firstSheet()) {}

  void setText(int row, int column, std::string_view text) override {
    checkCell(row, column);
    checkCellText(text);
    Column& to = columns_[column];
    const auto place = static_cast<std::size_t>(row) - 1;
    if (to.texts.size() <= place) to.texts.resize(place + 1);
    to.texts[place] = text;
    // Rows that the application has already are not sent again.
    to.firstNew = to.firstNew == 0 ? row : std::min(to.firstNew, row);
    to.lastNew = std::max(to.lastNew, row);
  }

  void setBold(const CellRange& range) override {
    rangeObject(range).object("Font").put("Bold", true);
  }

  void addListValidation(const CellRange& range, const CellRange& source) override {
    // xlValidateList, xlValidAlertStop and xlBetween.
    constexpr int list = 3;
    constexpr int stop = 1;
    constexpr int between = 1;
    // For its errors only.
    checkedListSource(source);
    const ExcelObject validation = rangeObject(range).object("Validation");
    // Add fails for a range that has a validation already.
    validation.call("Delete");
    validation.call("Add", list, stop, between, sourceAsSpelled("=" + absoluteRangeName(source)));
  }

  void setColumnWidth(int number, double characters) override {
    checkColumnWidth(characters);
    columns(number, number).put("ColumnWidth", characters);
  }

  void hideColumn(int number) override { columns(number, number).put("Hidden", true); }
  void setTextColumn(int number) override { columns(number, number).put("NumberFormat", "@"); }
  void autoFit(int firstColumn, int lastColumn) override {
    // First, because the application measures what its own cells contain.
    writeTexts();
    columns(firstColumn, lastColumn).call("AutoFit");
  }

  void saveAs(std::string_view path) override {
    writeTexts();
    // Known from version 12 on.
    workbook_.object().putIfKnown("CheckCompatibility", false);
    const int format = application_.xlsFormat();
    // Under another name first: a save that fails leaves the old file as it was.
    FileReplacement& replacement = application_.replace(path);
    application_.object().object("ActiveWorkbook").call("SaveAs", replacement.path(), format);
    // The application keeps its file open until then, and an open file cannot be moved.
    workbook_.close();
    replacement.moveInPlace();
  }

 private:
  struct Column {
    std::vector<std::string> texts;  ///< from row 1 on
    int firstNew = 0;                ///< rows not handed over yet; 0: none
    int lastNew = 0;
  };

  ExcelObject rangeObject(const CellRange& range) const {
    return sheet_.object("Range", rangeName(checkedRange(range)));
  }

  ExcelObject columns(int first, int last) const {
    return rangeObject({1, first, 1, last}).object("EntireColumn");
  }

  void writeTexts() {
    for (auto& [number, column] : columns_) {
      if (column.firstNew == 0) continue;
      for (int row = column.firstNew; row <= column.lastNew; row += rowsAtOnce) {
        write(number, column, row, std::min(row + rowsAtOnce - 1, column.lastNew));
      }
      column.firstNew = column.lastNew = 0;
    }
  }

  void write(int number, const Column& column, int firstRow, int lastRow) const {
    const auto first = static_cast<std::size_t>(firstRow) - 1;
    const auto texts =
        std::span(column.texts).subspan(first, static_cast<std::size_t>(lastRow) - first);
    const ExcelObject cells = rangeObject({firstRow, number, lastRow, number});
    // Before the values: else "007" would become a number and "1-2" a date.
    cells.put("NumberFormat", "@");
    cells.put("Value2", columnValue(texts));
    for (int row = firstRow; const std::string& text : texts) {
      if (travelsAlone(text)) writeAlone(row, number, text);
      ++row;
    }
  }

  void writeAlone(int row, int column, const std::string& text) const {
    const ExcelObject cell = rangeObject({row, column, row, column});
    cell.put("Value2", text);
    if (text.starts_with('\'') && toText(toValue(cell.get("Value2").get())) != text) {
      cell.put("Value2", '\'' + text);  // the application took the first one for the mark
    }
  }

  // Users may have chosen that ranges are spelled "R2C250".
  std::string sourceAsSpelled(std::string_view source) const {
    // xlA1, the other style being xlR1C1.
    constexpr int letters = 1;
    const ExcelObject& application = application_.object();
    Variant style = application.get("ReferenceStyle");
    if (toValue(style.get()) == Value(letters)) return std::string(source);
    return toText(
        toValue(application.get("ConvertFormula", source, letters, std::move(style)).get()));
  }

  ExcelApplication& application_;
  ExcelWorkbook workbook_;
  ExcelObject sheet_;
  std::map<int, Column> columns_;
};

}  // namespace

std::unique_ptr<WorksheetWriter> excelSheetWriter(ExcelApplication& application,
                                                  ExcelWorkbook workbook) {
  return std::make_unique<ExcelSheetWriter>(application, std::move(workbook));
}

}  // namespace velk
