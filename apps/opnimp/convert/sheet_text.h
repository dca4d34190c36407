// A worksheet as the text of a file: a line each row, so that their numbers are the same, ended by
// a carriage return; the cells, as a person sees them, separated by commas.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/convert/assumption.h"
#include "apps/opnimp/sheets/sheet_set.h"

namespace velk {

class SheetText {
 public:
  /// Of the sheet that the arguments name, or that the workbook leaves no doubt about.
  SheetText(std::string_view file, const Arguments& arguments);
  SheetText(const SheetText&) = delete;
  SheetText& operator=(const SheetText&) = delete;

  const std::string& text() const { return text_; }
  const Assumption& assumption() const { return assumption_; }
  /// Why there is no text: the workbook cannot be read, or does not say which sheet is meant.
  const std::string& refusal() const { return refusal_; }
  /// Options that say which sheet.
  const std::vector<std::string>& choices() const { return choices_; }

  /// What stands in a cell of a line, by its position from 0; null if that is nothing.
  const SheetCell* cell(std::size_t line, std::size_t position) const;
  /// The same if it says itself how a column of that nature is read: a date of dates, a number of
  /// amounts; null for another cell.
  const SheetCell* held(std::size_t line, std::size_t position, FieldNature nature) const;

 private:
  void choose(const Arguments& arguments);
  void chooseAmong(const std::vector<const Sheet*>& candidates, const Arguments& arguments);
  void offer(const std::vector<const Sheet*>& sheets);
  void take(const Sheet& sheet, std::string reason);
  void write(const Sheet& sheet, std::size_t mostRows);

  SheetSet set_;
  const Sheet* sheet_ = nullptr;
  std::size_t firstColumn_ = 1;  // blank ones before it are left out
  std::string text_;
  Assumption assumption_;
  std::string refusal_;
  std::vector<std::string> choices_;
};

/// Of a cell that is held: the day of a date, the digits of a number, as the screens read them.
std::string canonicalText(const SheetCell& held);

}  // namespace velk
