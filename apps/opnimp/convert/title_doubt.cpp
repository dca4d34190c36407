#include "apps/opnimp/convert/title_doubt.h"

#include <algorithm>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/convert/amount_text.h"
#include "apps/opnimp/convert/date_text.h"
#include "apps/opnimp/convert/layout.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

bool isUpper(char c) {
  return lowerAscii(c) != c;
}

/// Values of a code, a number or a date are written alike: "B001" and "C17" are both "A9".
std::string shapeOf(std::string_view text) {
  std::string shape;
  for (const char c : text) {
    const char sort = isDigit(c) ? '9' : isUpper(c) ? 'A' : lowerAscii(c) >= 'a' ? 'a' : c;
    if (sort != '9' || !shape.ends_with('9')) shape += sort;
  }
  return shape.find('9') == std::string::npos ? std::string() : shape;
}

bool readsAs(FieldNature nature, std::string_view text) {
  if (nature == FieldNature::Amount) return readAmount(text).has_value();
  return nature == FieldNature::Date && readDateText(text).clue != DateClue::None;
}

}  // namespace

TitleDoubt::TitleDoubt(const RowReader& row, std::span<const std::string> titles,
                       std::span<const FieldNature> natures, const Arguments& arguments)
    : line_(row.line()), row_(row.row()) {
  if (arguments.convert.headerLine != 0) return;
  for (std::size_t i = 0; i < titles.size(); ++i) {
    if (value_.empty() && readsAs(natures[i], titles[i])) value_ = titles[i];
  }
  // A record may have one by chance.
  constexpr std::ptrdiff_t enough = 2;
  const auto isOwn = [&](const std::string& title) { return isOwnTitle(title, arguments); };
  if (std::ranges::count_if(titles, isOwn) >= enough) value_.clear();
  const auto isNumbered = [](const MapOption& map) {
    return !map.isOfProfile && ordinalNumber(map.column).has_value();
  };
  const auto isNamed = [&](const std::string& title) { return namesField(title, arguments); };
  if (std::ranges::none_of(arguments.maps, isNumbered) || std::ranges::any_of(titles, isNamed)) {
    return;
  }
  std::string room;
  for (std::size_t i = 0; i < titles.size(); ++i) {
    const std::string_view written = trim(meantValue(row.cells()[i].text, room));
    columns_.push_back({titles[i], std::string(written), shapeOf(written)});
  }
}

void TitleDoubt::addRecord(const RowReader& record) {
  // Titles may stand above each page.
  if (record.row() == row_) return;
  std::string room;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    Column& column = columns_[i];
    const std::string_view value = trim(meantValue(record.cells()[i].text, room));
    if (value.empty() || column.written.empty()) continue;
    column.recurs = column.recurs || value == column.written;
    column.isFilled = true;
    if (!column.shape.empty() && shapeOf(value) != column.shape) column.shape.clear();
  }
}

std::string TitleDoubt::refusal() const {
  const auto looksAlike = [](const Column& column) {
    return column.recurs || (column.isFilled && !column.shape.empty());
  };
  const auto alike = std::ranges::find_if(columns_, looksAlike);
  if (value_.empty() && alike == columns_.end()) return {};
  constexpr std::size_t mostShown = 80;
  const std::string& shown = value_.empty() ? alike->title : value_;
  return "line " + grouped(line_) + " is taken for the titles, but may be a record, for \"" +
         cutTo(printable(shown), mostShown) + "\" " +
         (value_.empty() ? "looks like what stands below it" : "is no title of its column") +
         ": put a line of titles above it, or, if it does hold the titles, say so with " + choice();
}

std::string TitleDoubt::choice() const {
  return "--header-line " + std::to_string(line_);
}

}  // namespace velk
