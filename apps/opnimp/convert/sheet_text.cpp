#include "apps/opnimp/convert/sheet_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <set>
#include <span>
#include <utility>

#include "apps/opnimp/convert/layout.h"
#include "apps/opnimp/sheets/read_sheets.h"
#include "base/dates.h"
#include "base/decimal.h"
#include "base/text.h"
#include "platform/native/native_shell.h"
#include "platform/spreadsheet/damage.h"
#include "platform/spreadsheet/sheet_cells.h"

namespace velk {

namespace {

/// What cells that lie far apart may make of a text at most.
constexpr std::size_t mostBlankCells = std::size_t{1} << 25U;
/// Enough to find the titles in.
constexpr std::size_t mostRowsAbove = 50;

bool isBlank(const SheetCell& cell) {
  return trim(cell.text).empty() && cell.kind != SheetCell::Kind::NoResult;
}

/// The first and the last column with a cell that is not blank, and the last row.
struct Extent {
  std::size_t first = std::numeric_limits<std::size_t>::max();
  std::size_t last = 0;
  std::size_t rows = 0;
};

Extent extentOf(const Sheet& sheet) {
  Extent extent;
  for (const SheetCell& cell : sheet.cells) {
    if (isBlank(cell)) continue;
    extent.first = std::min<std::size_t>(extent.first, cell.column);
    extent.last = std::max<std::size_t>(extent.last, cell.column);
    extent.rows = cell.row;
  }
  return extent;
}

std::size_t filledColumns(const Sheet& sheet) {
  std::set<std::uint32_t> columns;
  for (const SheetCell& cell : sheet.cells) {
    if (!isBlank(cell)) columns.insert(cell.column);
  }
  return columns.size();
}

std::string dayText(double days) {
  std::string text = formatIso({days});
  constexpr std::string_view midnight = " 00:00:00";
  if (text.ends_with(midnight)) text.resize(text.size() - midnight.size());
  return text;
}

}  // namespace

SheetText::SheetText(std::string_view file, const Arguments& arguments) {
  try {
    set_ = readSheets(file);
    choose(arguments);
  } catch (const RuntimeError& error) {
    refusal_ = error.description();
    // It becomes part of a sentence.
    refusal_.replace(0, 1, lowerAscii(refusal_.substr(0, 1)));
  }
}

void SheetText::choose(const Arguments& arguments) {
  const std::string& wanted = arguments.convert.sheet;
  if (!wanted.empty()) {
    const Sheet* const named = findSheet(set_, wanted);
    if (named == nullptr) refuse(noSuchSheet(set_, wanted));
    return take(*named, arguments.convert.origin("--sheet"));
  }
  std::vector<const Sheet*> candidates;
  std::vector<const Sheet*> hidden;
  for (const Sheet& sheet : set_.sheets) {
    if (extentOf(sheet).rows > 0) (sheet.isHidden ? hidden : candidates).push_back(&sheet);
  }
  if (candidates.empty() && hidden.empty()) refuse("The workbook is blank");
  if (candidates.empty()) {
    offer(hidden);
    refuse("All sheets with values are hidden: say which is meant with --sheet NAME; there is " +
           namesOf(hidden));
  }
  chooseAmong(candidates, arguments);
  std::erase(candidates, sheet_);
  candidates.insert(candidates.end(), hidden.begin(), hidden.end());
  if (!candidates.empty()) assumption_.reason += "; left out: " + namesOf(candidates);
}

// Sheets of another content than records have no titles of them, and are not as wide: another
// may be a part of the records whose titles are missing or spelt otherwise.
void SheetText::chooseAmong(const std::vector<const Sheet*>& candidates,
                            const Arguments& arguments) {
  if (candidates.size() == 1) return take(*candidates.front(), "no other one has values");
  std::vector<const Sheet*> titled;
  // Two are a doubt already, and more sheets than anybody lays out are not looked through.
  constexpr std::size_t mostSheets = 256;
  for (const Sheet* const sheet :
       std::span(candidates).first(std::min(candidates.size(), mostSheets))) {
    if (titled.size() == 2) break;
    write(*sheet, mostRowsAbove);
    if (countSheetTitles(text_, arguments) > 1) titled.push_back(sheet);
  }
  text_.clear();
  const auto mayHaveRecords = [&](const Sheet* sheet) {
    const std::size_t filled = filledColumns(*sheet);
    return sheet != titled.front() && filled >= arguments.kind->mandatory.size() &&
           filled >= filledColumns(*titled.front());
  };
  if (titled.size() != 1 || candidates.size() > mostSheets ||
      std::ranges::any_of(candidates, mayHaveRecords)) {
    offer(candidates);
    refuse(
        "The workbook has several sheets with values: say which is meant with --sheet NAME; "
        "there is " +
        namesOf(candidates));
  }
  take(*titled.front(), "no other one has titles of " + std::string(arguments.kind->name));
}

// By their numbers: names may have any signs.
void SheetText::offer(const std::vector<const Sheet*>& sheets) {
  constexpr std::size_t most = 5;
  for (std::size_t i = 0; i < std::min(sheets.size(), most); ++i) {
    const auto number = static_cast<std::size_t>(sheets[i] - set_.sheets.data()) + 1;
    choices_.push_back("--sheet " + shellWord('#' + std::to_string(number)).value());
  }
}

void SheetText::take(const Sheet& sheet, std::string reason) {
  sheet_ = &sheet;
  assumption_ = {std::string(sheetAssumption), sheet.name, std::move(reason), "--sheet NAME"};
  write(sheet, std::numeric_limits<std::size_t>::max());
  if (text_.empty()) refuse("The sheet \"" + sheet.name + "\" is blank");
  if (firstColumn_ > 1) {
    assumption_.reason +=
        "; #1 is its column " + columnLetters(firstColumn_) + ", those before it are blank";
  }
}

void SheetText::write(const Sheet& sheet, std::size_t mostRows) {
  const Extent extent = extentOf(sheet);
  firstColumn_ = extent.first;
  text_.clear();
  std::size_t row = 1;
  std::size_t column = extent.first;
  std::size_t blanks = 0;
  bool isBegun = false;
  const auto pad = [&](std::size_t to) {
    blanks += to - column;
    if (blanks > mostBlankCells) refuse("The cells of the workbook lie too far apart");
    text_.append(to - column, ',');
    column = to;
  };
  for (const SheetCell& cell : sheet.cells) {
    if (isBlank(cell)) continue;
    if (cell.row - sheet.cells.front().row >= mostRows) break;
    if (cell.row > row) {
      if (isBegun) pad(extent.last);
      text_.append(cell.row - row, '\r');
      row = cell.row;
      column = extent.first;
    }
    pad(cell.column);
    needsQuotes(cell.text) ? appendQuoted(text_, cell.text) : void(text_ += cell.text);
    isBegun = true;
  }
  if (isBegun) pad(extent.last);
}

const SheetCell* SheetText::cell(std::size_t line, std::size_t position) const {
  return sheet_->find(line, firstColumn_ + position);
}

const SheetCell* SheetText::held(std::size_t line, std::size_t position, FieldNature nature) const {
  const SheetCell* const found = cell(line, position);
  if (found == nullptr) return nullptr;
  const bool isOfNature = found->kind == SheetCell::Kind::Date     ? nature == FieldNature::Date
                          : found->kind == SheetCell::Kind::Number ? nature == FieldNature::Amount
                                                                   : false;
  return isOfNature ? found : nullptr;
}

std::string canonicalText(const SheetCell& held) {
  if (held.kind == SheetCell::Kind::Date) return dayText(held.value);
  return (held.value < 0 ? "-" : "") + Decimal(held.value).general();
}

}  // namespace velk
