#include "platform/spreadsheet/zipped/xlsx_cells.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

#include "base/numbers.h"
#include "base/text.h"
#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/sheet_cells.h"
#include "platform/spreadsheet/zipped/iso_date.h"
#include "platform/spreadsheet/zipped/xlsx_texts.h"

namespace velk {

namespace {

/// Column and row of "B5".
struct Place {
  std::uint32_t row = 0;
  std::uint32_t column = 0;
};

Place placeNamed(std::string_view name) {
  Place place;
  std::size_t letters = 0;
  for (; letters < name.size() && name[letters] >= 'A' && name[letters] <= 'Z'; ++letters) {
    place.column = place.column * 26 + static_cast<std::uint32_t>(name[letters] - 'A' + 1);
    if (place.column > mostSheetColumns) damaged("a cell lies outside the sheet");
  }
  const auto row = exactNumber<std::uint32_t>(name.substr(letters));
  if (letters == 0 || !row) damaged("the place of a cell is none");
  place.row = *row;
  return place;
}

/// A height or width by which nothing shows.
bool isZero(std::string_view length) {
  return exactNumber<double>(length) == 0.0;
}

}  // namespace

void XlsxMerges::begin(std::string_view name, const XmlAttributes& attributes) {
  if (name != "mergeCell") return;
  const std::string_view range = attributes["ref"];
  const std::size_t colon = range.find(':');
  if (colon == std::string_view::npos) return;
  const Place first = placeNamed(range.substr(0, colon));
  const Place last = placeNamed(range.substr(colon + 1));
  ranges_.push_back({first.row, first.column, last.row, last.column});
}

bool XlsxMerges::covers(std::uint32_t row, std::uint32_t column) {
  if (row != row_) {
    row_ = row;
    ofRow_.clear();
    std::ranges::copy_if(ranges_, std::back_inserter(ofRow_), [&](const Range& range) {
      return row >= range.firstRow && row <= range.lastRow;
    });
  }
  return std::ranges::any_of(ofRow_, [&](const Range& range) {
    const bool isInside = column >= range.firstColumn && column <= range.lastColumn;
    return isInside && (row != range.firstRow || column != range.firstColumn);
  });
}

void XlsxCells::begin(std::string_view name, const XmlAttributes& attributes) {
  if (name == "col") beginColumns(attributes);
  if (name == "row") beginRow(attributes);
  if (name == "c") beginCell(attributes);
  if (name == "f") hasFormula_ = true;
  if (name == "rPh") inReading_ = true;
  inValue_ = name == "v" || (name == "t" && !inReading_);
  hasValue_ = hasValue_ || inValue_;
}

void XlsxCells::end(std::string_view name) {
  inValue_ = false;
  if (name == "rPh") inReading_ = false;
  if (name == "c") endCell();
}

void XlsxCells::text(std::string_view piece) {
  if (inValue_) value_ += piece;
}

void XlsxCells::beginColumns(const XmlAttributes& attributes) {
  if (!isXmlTrue(attributes["hidden"]) && !isZero(attributes["width"])) return;
  const auto first = exactNumber<std::uint32_t>(attributes["min"]).value_or(mostSheetColumns + 1);
  const auto last = exactNumber<std::uint32_t>(attributes["max"]).value_or(0);
  for (auto i = first; i <= std::min(last, mostSheetColumns); ++i) hiddenColumns_.set(i);
}

// Rows and cells that do not say where they are follow each other.
void XlsxCells::beginRow(const XmlAttributes& attributes) {
  const std::string_view written = attributes["r"];
  const auto row = written.empty() ? row_ + 1 : exactNumber<std::uint32_t>(written).value_or(0);
  if (row <= row_ || row > mostSheetRows) damaged("its rows are not in their order");
  row_ = row;
  column_ = 0;
  isRowHidden_ = isXmlTrue(attributes["hidden"]) || isZero(attributes["ht"]);
}

void XlsxCells::beginCell(const XmlAttributes& attributes) {
  const std::string_view name = attributes["r"];
  const Place place = name.empty() ? Place{row_, column_ + 1} : placeNamed(name);
  if (row_ == 0 || place.row != row_ || place.column <= column_) {
    damaged("its cells are not in their order");
  }
  if (place.column > mostSheetColumns) damaged("a cell lies outside the sheet");
  column_ = place.column;
  type_ = attributes["t"];
  style_ = exactNumber<std::size_t>(attributes["s"]).value_or(0);
  hasFormula_ = hasValue_ = false;
  value_.clear();
}

void XlsxCells::endCell() {
  SheetCell cell{row_, column_};
  shown_.clear();
  // A formula that came to an empty text has a value, too.
  const bool hasResult = type_ == "str" ? hasValue_ : !value_.empty();
  if (hasFormula_ && !hasResult) {
    cell.kind = SheetCell::Kind::NoResult;
  } else if (value_.empty()) {
    return;
  } else {
    fillCell(cell);
  }
  cell.text = shown_;
  cell.isHidden = cell.isHidden || isRowHidden_ || hiddenColumns_.test(column_) ||
                  merges_.covers(row_, column_);
  if (!shown_.empty() || cell.kind == SheetCell::Kind::NoResult) sink_.cell(cell);
}

void XlsxCells::fillCell(SheetCell& cell) {
  if (type_ == "s") {
    const auto text = exactNumber<std::size_t>(value_);
    if (!text || *text >= texts_.size()) damaged("the text of a cell is missing");
    shown_ = texts_[*text];
  } else if (type_ == "b") {
    shown_ = booleanText(value_ != "0");
  } else if (type_ == "e") {
    cell.kind = SheetCell::Kind::Error;
    shown_ = value_;
  } else if (type_ == "d") {
    const std::optional<double> days = isoDays(value_);
    if (!days) damaged("the date of a cell is none");
    cell.kind = SheetCell::Kind::Date;
    cell.value = *days;
    shown_ = value_;
  } else if (type_.empty() || type_ == "n") {
    fillNumber(cell);
  } else {
    appendXlsxText(shown_, value_);
  }
}

void XlsxCells::fillNumber(SheetCell& cell) {
  const std::optional<double> number = exactNumber<double>(trim(value_));
  if (!number || !std::isfinite(*number)) damaged("the number of a cell is none");
  const NumberFormat& format = styles_.format(style_);
  setNumber(cell, *number, format, parts_.from1904);
  shown_ = format.text(*number, parts_.from1904);
  const bool showsDigit = std::ranges::any_of(shown_, isDigit);
  const bool showsNothing = !showsDigit || styles_.showsNothing(style_);
  cell.isHidden = cell.kind == SheetCell::Kind::Number && *number != 0 && showsNothing;
  // What programs write that do not calculate.
  const bool isUnknown = hasFormula_ && parts_.recalculates && *number == 0;
  if (isUnknown) cell.kind = SheetCell::Kind::NoResult;
}

}  // namespace velk
