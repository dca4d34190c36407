#include "platform/spreadsheet/xls/workbook_writer.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/spreadsheet/xls/record_writer.h"
#include "platform/spreadsheet/xls/text_width.h"

namespace velk::xls {

namespace {

// Positions of fonts: that of number 4 does not exist in any file, so bold is the fifth, number 5.
constexpr std::size_t plainFonts = 4;
constexpr std::size_t boldFont = 5;

// Positions of cell formats. The first sixteen have to be there.
constexpr std::size_t styleFormats = 15;
constexpr std::size_t defaultFormat = 15;
constexpr std::size_t textFormat = 16;
constexpr std::size_t boldTextFormat = 17;

constexpr std::size_t textNumberFormat = 49;  // "@"

/// Stored widths are 256ths of a digit and count the five pixels beside the text, seven being a
/// digit's.
std::size_t storedWidth(double characters) {
  constexpr double margin = 5.0 / 7;
  return static_cast<std::size_t>(std::floor((characters + margin) * 256));
}

class WorkbookWriter {
 public:
  explicit WorkbookWriter(std::span<const SheetModel* const> sheets)
      : sheets_(sheets), records_(stream_) {}

  std::string write() {
    reserveStream();
    writeGlobals();
    std::size_t firstText = 0;
    for (std::size_t i = 0; i < sheets_.size(); ++i) {
      setOffset(i);
      writeSheet(*sheets_[i], firstText, i == 0);
      firstText += sheets_[i]->texts.texts().size();
    }
    return std::move(stream_);
  }

 private:
  /// Growing step by step would cost 8 % of an export and 10 MB for 60,000 salesmen.
  void reserveStream() {
    constexpr std::size_t cellLength = 14;
    constexpr std::size_t textExtra = 3;
    constexpr std::size_t rest = 8192;
    std::size_t length = rest;
    for (const SheetModel* sheet : sheets_) {
      length += sheet->texts.texts().length() + textExtra * sheet->texts.texts().size();
      for (const auto& row : sheet->cells.rows()) length += row.size() * cellLength;
    }
    stream_.reserve(length);
  }

  void beginSubstream(std::uint16_t kind) {
    // Build and year (1996) of the first version with this format.
    constexpr std::size_t build = 0x0DBB;
    constexpr std::size_t year = 0x07CC;
    constexpr std::size_t lowestVersion = 6;
    records_.begin(Record::Bof).u16(versionBiff8).u16(kind).u16(build).u16(year);
    records_.u32(0).u32(lowestVersion);
  }

  void endSubstream() { records_.begin(Record::Eof).end(); }

  void writeGlobals() {
    constexpr std::size_t utf16 = 1200;
    beginSubstream(substreamGlobals);
    records_.begin(Record::CodePage).u16(utf16);  // the order of what follows is the format's
    writeWindow();
    records_.begin(Record::DateMode).u16(0);
    for (std::size_t i = 0; i < plainFonts; ++i) writeFont(false);
    writeFont(true);
    writeFormats();
    for (const SheetModel* sheet : sheets_) {
      records_.begin(Record::BoundSheet);
      sheetOffsets_.push_back(stream_.size());
      records_.u32(0).u8(0).u8(sheetIsWorksheet).shortText(sheet->name, 1);
    }
    writeTexts();
    endSubstream();
  }

  void writeWindow() {
    // Place and size in twips, flags, active and first tab, one selected, width of the tabs.
    constexpr std::size_t scrollBarsAndTabs = 0x38;
    records_.begin(Record::Window1).u16(0).u16(0).u16(16000).u16(9000).u16(scrollBarsAndTabs);
    records_.u16(0).u16(0).u16(1).u16(600);
  }

  void writeFont(bool bold) {
    constexpr std::size_t automaticColour = 0x7FFF;
    constexpr std::uint8_t swiss = 2;
    // The height is in twentieths of a point, the weight as Windows counts it.
    records_.begin(Record::Font).u16(defaultFontPoints * 20).u16(0).u16(automaticColour);
    records_.u16(bold ? 700 : 400).u16(0).u8(0).u8(swiss).u8(0).u8(0);
    records_.shortText(defaultFontName, 1);
  }

  void writeFormats() {
    // 0xFFF5: a format of a style, locked and without a parent; 0xF4: what it does not set.
    for (std::size_t i = 0; i < styleFormats; ++i) writeFormat(0, 0, 0xFFF5, i == 0 ? 0 : 0xF4);
    constexpr std::size_t locked = 1;
    constexpr std::uint8_t ownNumberFormat = 0x04;
    constexpr std::uint8_t ownFont = 0x08;
    writeFormat(0, 0, locked, 0);
    writeFormat(0, textNumberFormat, locked, ownNumberFormat);
    writeFormat(boldFont, textNumberFormat, locked, ownNumberFormat | ownFont);
    // The last byte is the outline level, which only styles of outlines have.
    constexpr std::size_t builtInStyle = 0x8000;
    records_.begin(Record::Style).u16(builtInStyle).u8(0).u8(0xFF);  // "Normal"
  }

  void writeFormat(std::size_t font, std::size_t number, std::size_t kind, std::uint8_t own) {
    constexpr std::uint8_t bottom = 0x20;
    // The automatic colours 64 and 65, seven bits each.
    constexpr std::size_t noPattern = 0x20C0;
    records_.begin(Record::ExtendedFormat).u16(font).u16(number).u16(kind);
    records_.u8(bottom).u8(0).u8(0).u8(own).u32(0).u32(0).u16(noPattern);
  }

  void writeTexts() {
    std::size_t used = 0;
    std::size_t count = 0;
    for (const SheetModel* sheet : sheets_) {
      count += sheet->texts.texts().size();
      for (const auto& row : sheet->cells.rows()) {
        used += static_cast<std::size_t>(std::ranges::count(row, Cell::Kind::Text, &Cell::kind));
      }
    }
    records_.begin(Record::SharedStrings).u32(used).u32(count);
    for (const SheetModel* sheet : sheets_) {
      const TextPool& texts = sheet->texts.texts();
      for (std::size_t i = 0; i < texts.size(); ++i) records_.sharedText(texts[i]);
    }
  }

  /// The list of sheets was written before their places were known.
  void setOffset(std::size_t sheet) {
    for (std::size_t i = 0; i < 4; ++i) {
      stream_[sheetOffsets_[sheet] + i] = static_cast<char>(stream_.size() >> 8U * i);
    }
  }

  /// `firstText`: the number of its first text among those of all sheets.
  void writeSheet(const SheetModel& sheet, std::size_t firstText, bool selected) {
    beginSubstream(substreamWorksheet);
    // The order is the format's: columns, dimensions, cells, window, validations.
    for (const auto& [number, column] : sheet.columns) writeColumn(number, column);
    writeDimensions(sheet);
    for (const auto& row : sheet.cells.rows()) {
      for (const Cell& cell : row) writeCell(cell, sheet.isBold(cell), firstText);
    }
    constexpr std::size_t gridHeadersZeros = 0x00B6;
    constexpr std::size_t selectedShown = 0x0600;
    constexpr std::size_t automaticColour = 0x40;
    records_.begin(Record::Window2).u16(gridHeadersZeros | (selected ? selectedShown : 0));
    records_.u16(0).u16(0);
    records_.u32(automaticColour).u16(0).u16(0).u32(0);
    writeValidations(sheet);
    endSubstream();
  }

  void writeColumn(int number, const SheetColumn& column) {
    // A column that is only hidden needs a width in its record, too.
    constexpr double usualWidth = 8.43;
    const auto position = static_cast<std::size_t>(number);
    records_.begin(Record::ColumnInfo).u16(position).u16(position);
    records_.u16(storedWidth(column.width.value_or(usualWidth)));
    records_.u16(column.text ? textFormat : defaultFormat);
    records_.u16(column.hidden ? 1 : 0).u16(0);
  }

  void writeDimensions(const SheetModel& sheet) {
    const auto& rows = sheet.cells.rows();
    // Of a sheet without cells all are zero.
    std::size_t firstColumn = rows.empty() ? 0 : maxSheetColumns;
    std::size_t columns = 0;
    for (const auto& row : rows) {
      if (row.empty()) continue;
      firstColumn = std::min<std::size_t>(firstColumn, row.front().column);
      columns = std::max<std::size_t>(columns, row.back().column + 1U);
    }
    const auto firstUsed = std::ranges::find_if(rows, [](const auto& row) { return !row.empty(); });
    // The ends are one past the last row and column.
    records_.begin(Record::Dimensions);
    records_.u32(static_cast<std::size_t>(firstUsed - rows.begin())).u32(rows.size());
    records_.u16(firstColumn).u16(columns).u16(0);
  }

  void writeCell(const Cell& cell, bool bold, std::size_t firstText) {
    const bool blank = cell.kind == Cell::Kind::Blank;
    if (blank && !bold) return;  // a blank cell is there for its font only
    records_.begin(blank ? Record::Blank : Record::LabelSst);
    records_.u16(cell.row).u16(cell.column).u16(bold ? boldTextFormat : textFormat);
    if (!blank) records_.u32(firstText + cell.value);
  }

  void writeValidations(const SheetModel& sheet) {
    if (sheet.validations.empty()) return;
    constexpr std::size_t noDropDownShown = 0xFFFFFFFF;
    records_.begin(Record::ValidationList).u16(0).u32(0).u32(0).u32(noDropDownShown);
    records_.u32(sheet.validations.size());
    for (const ListValidation& validation : sheet.validations) writeValidation(validation);
  }

  void writeValidation(const ListValidation& validation) {
    constexpr std::size_t isList = 3;
    constexpr std::size_t blankAllowedPromptAndStopShown = 0xC0100;
    // A token for an area and its four edges of two bytes.
    constexpr std::uint8_t areaToken = 0x25;
    constexpr std::size_t areaLength = 9;
    records_.begin(Record::Validation).u32(isList | blankAllowedPromptAndStopShown);
    // No titles, no texts of its own; a text that is not there is a NUL.
    for (int i = 0; i < 4; ++i) records_.shortText(std::string_view("\0", 1), 2);
    records_.u16(areaLength).u16(0).u8(areaToken);
    writeRange(validation.source);
    records_.u16(0).u16(0);  // no second formula
    records_.u16(1);
    writeRange(validation.cells);
  }

  void writeRange(const CellRange& range) {
    for (const int edge : {range.firstRow, range.lastRow, range.firstColumn, range.lastColumn}) {
      records_.u16(static_cast<std::size_t>(edge));
    }
  }

  std::span<const SheetModel* const> sheets_;
  std::string stream_;
  RecordWriter records_;
  std::vector<std::size_t> sheetOffsets_;  // in the list of sheets
};

}  // namespace

std::string writeWorkbook(std::span<const SheetModel* const> sheets) {
  return WorkbookWriter(sheets).write();
}

}  // namespace velk::xls
