// The sheets of a workbook, whatever its format: .xls, .xlsx or .ods, told by its bytes.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/sheet_sink.h"

namespace velk {

struct Sheet {
  std::string name;
  bool isHidden = false;
  std::vector<SheetCell> cells;  ///< row by row, from left to right

  /// Null for a blank one. Rows and columns count from 1.
  const SheetCell* find(std::size_t row, std::size_t column) const;
};

struct SheetSet {
  std::unique_ptr<const std::string> texts;  ///< that the cells look into
  std::vector<Sheet> sheets;                 ///< one at least
};

/// The one of that name, or #N for the Nth; null if there is none.
const Sheet* findSheet(const SheetSet& set, std::string_view name);
/// A sentence without its end.
std::string noSuchSheet(const SheetSet& set, std::string_view name);
/// Their names in quotes, and which of them are hidden.
std::string namesOf(const std::vector<const Sheet*>& sheets);

}  // namespace velk
