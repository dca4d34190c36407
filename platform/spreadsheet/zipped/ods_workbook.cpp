#include "platform/spreadsheet/zipped/ods_workbook.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"
#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/number_format.h"
#include "platform/spreadsheet/zipped/iso_date.h"

namespace velk {

namespace {

using Kind = SheetCell::Kind;

/// Sheets stand in the document's body; tables elsewhere are something else.
constexpr int sheetDepth = 4;

std::uint32_t repeated(const XmlAttributes& attributes, std::string_view name, std::uint32_t most) {
  if (!attributes.has(name)) return 1;
  const auto count = exactNumber<std::uint32_t>(attributes[name]);
  if (!count || *count == 0 || *count > most) damaged("a cell lies outside the sheet");
  return *count;
}

/// Of numbers that show as text with an exponent all digits count.
bool hidesDigits(std::string_view shown) {
  return shown.empty() || shown.find("E+") != std::string_view::npos;
}

bool namesError(std::string_view text) {
  constexpr std::string_view names[] = {"#NULL!", "#DIV/0!", "#VALUE!", "#REF!",
                                        "#NAME?", "#NUM!",   "#N/A"};
  return text.starts_with("Err:") || std::ranges::find(names, text) != std::end(names);
}

/// Of a row, or of columns; a filter hides rows, too.
bool isHidden(const XmlAttributes& attributes) {
  const std::string_view visibility = attributes["table:visibility"];
  return visibility == "collapse" || visibility == "filter";
}

double numberOf(std::string_view written) {
  const auto number = exactNumber<double>(trim(written));
  if (!number || !std::isfinite(*number)) damaged("the number of a cell is none");
  return *number;
}

}  // namespace

void OdsWorkbook::begin(std::string_view name, const XmlAttributes& attributes) {
  ++depth_;
  if (skipDepth_ > 0) return;
  if (cellDepth_ > 0) return beginInText(name, attributes);
  if (name == "table" && depth_ == sheetDepth) return beginSheet(attributes);
  if (!inSheet_) return beginStyle(name, attributes);
  if (name == "table-column") beginColumns(attributes);
  if (name == "table-row") beginRow(attributes);
  if (name == "table-row-group") rowGroups_.push_back(attributes["table:display"] == "false");
  if (name == "shapes") skipDepth_ = depth_;
  if (name != "table-cell" && name != "covered-table-cell") return;
  beginCell(attributes);
  // Under the cell that was merged with it.
  cell_.first.isHidden = name == "covered-table-cell";
}

void OdsWorkbook::end(std::string_view name) {
  if (depth_ == skipDepth_) skipDepth_ = 0;
  if (skipDepth_ > 0) {
    --depth_;
    return;
  }
  if (depth_ == paragraphDepth_) paragraphDepth_ = 0;
  if (depth_ == cellDepth_) {
    endCell();
  } else if (cellDepth_ == 0 && inSheet_ && name == "table-row") {
    endRow();
  } else if (cellDepth_ == 0 && name == "table-row-group" && !rowGroups_.empty()) {
    rowGroups_.pop_back();
  } else if (depth_ == sheetDepth && name == "table") {
    inSheet_ = false;
  }
  --depth_;
}

void OdsWorkbook::text(std::string_view piece) {
  if (paragraphDepth_ > 0) cell_.text += piece;
}

void OdsWorkbook::beginStyle(std::string_view name, const XmlAttributes& attributes) {
  if (name == "style") style_ = attributes["style:name"];
  if (name != "table-properties") return;
  if (attributes["table:display"] == "false") hiddenSheets_.insert(style_);
}

void OdsWorkbook::beginSheet(const XmlAttributes& attributes) {
  inSheet_ = hasSheets_ = true;
  row_ = columns_ = 0;
  rowGroups_.clear();
  hiddenColumns_.reset();
  sink_.sheet(attributes["table:name"], hiddenSheets_.contains(attributes["table:style-name"]));
}

void OdsWorkbook::beginColumns(const XmlAttributes& attributes) {
  const std::uint32_t first = columns_ + 1;
  columns_ += repeated(attributes, "table:number-columns-repeated", mostSheetColumns);
  columns_ = std::min(columns_, mostSheetColumns);
  if (!isHidden(attributes)) return;
  for (std::uint32_t i = first; i <= columns_; ++i) hiddenColumns_.set(i);
}

void OdsWorkbook::beginRow(const XmlAttributes& attributes) {
  ++row_;
  rowCount_ = repeated(attributes, "table:number-rows-repeated", mostSheetRows);
  isRowHidden_ = isHidden(attributes) || std::ranges::find(rowGroups_, true) != rowGroups_.end();
  column_ = 0;
  cells_.clear();
}

void OdsWorkbook::beginCell(const XmlAttributes& attributes) {
  const std::uint32_t count =
      repeated(attributes, "table:number-columns-repeated", mostSheetColumns);
  cell_ = {{row_, column_ + 1}, count, {}};
  column_ += count;
  cellDepth_ = depth_;
  paragraphs_ = 0;
  hasFormula_ = attributes.has("table:formula");
  const std::string_view type = attributes["office:value-type"];
  hasValue_ = !type.empty();
  written_ = attributes[type == "date" ? "office:date-value" : "office:string-value"];
  if (type == "boolean") written_ = upperAscii(attributes["office:boolean-value"]);
  SheetCell& cell = cell_.first;
  if (type == "float" || type == "currency" || type == "percentage") {
    cell.kind = Kind::Number;
    cell.value = numberOf(attributes["office:value"]);
  } else if (type == "date") {
    const auto days = isoDays(written_);
    cell.kind = days ? Kind::Date : Kind::Text;
    cell.value = days.value_or(0);
  }
  if (attributes["calcext:value-type"] == "error") cell.kind = Kind::Error;
}

/// Notes and drawings of a cell have paragraphs, too, but not right in it.
void OdsWorkbook::beginInText(std::string_view name, const XmlAttributes& attributes) {
  if (name == "p" && depth_ == cellDepth_ + 1) {
    if (paragraphs_++ > 0) cell_.text += '\n';
    paragraphDepth_ = depth_;
  }
  if (paragraphDepth_ == 0) return;
  constexpr std::uint32_t mostBlanks = 32767;
  if (name == "s") cell_.text.append(repeated(attributes, "text:c", mostBlanks), ' ');
  if (name == "tab") cell_.text += '\t';
  if (name == "line-break") cell_.text += '\n';
}

void OdsWorkbook::endCell() {
  cellDepth_ = paragraphDepth_ = 0;
  SheetCell& cell = cell_.first;
  if (paragraphs_ == 0) cell_.text = written_;
  if (hasFormula_ && !hasValue_ && cell_.text.empty()) cell.kind = Kind::NoResult;
  // Older programs write an error as the number 0; a text that says so is one of a formula only.
  const bool mayFail = cell.kind == Kind::Number || (hasFormula_ && cell.kind == Kind::Text);
  if (mayFail && namesError(cell_.text)) cell.kind = Kind::Error;
  const bool showsDigit = std::ranges::any_of(cell_.text, isDigit);
  // By a format that shows nothing, or a text in the place of the number.
  if (cell.kind == Kind::Number && paragraphs_ > 0 && cell.value != 0 && !showsDigit) {
    cell.isHidden = true;
  }
  if (cell.kind == Kind::Number && hidesDigits(cell_.text)) {
    cell_.text = NumberFormat(builtInFormat(0)).text(cell.value, false);
  }
  if (cell_.text.empty() && cell.kind != Kind::NoResult) return;
  if (column_ > mostSheetColumns) damaged("a cell lies outside the sheet");
  cells_.push_back(std::move(cell_));
}

void OdsWorkbook::endRow() {
  const std::uint32_t last = row_ + rowCount_ - 1;
  if (!cells_.empty() && last > mostSheetRows) damaged("a cell lies outside the sheet");
  for (std::uint32_t row = row_; row <= last && !cells_.empty(); ++row) {
    for (const Cells& cells : cells_) {
      SheetCell cell = cells.first;
      cell.row = row;
      cell.text = cells.text;
      for (std::uint32_t i = 0; i < cells.count; ++i, ++cell.column) {
        cell.isHidden = cells.first.isHidden || isRowHidden_ || hiddenColumns_.test(cell.column);
        sink_.cell(cell);
      }
    }
  }
  row_ = std::min(last, mostSheetRows);
}

}  // namespace velk
