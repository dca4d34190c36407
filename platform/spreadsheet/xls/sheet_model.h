// A new worksheet before it is written. Rows and columns count from 0 here, as they do in files.
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/spreadsheet.h"
#include "platform/spreadsheet/xls/sheet_data.h"
#include "platform/spreadsheet/xls/text_set.h"

namespace velk::xls {

struct ListValidation {
  CellRange cells;
  CellRange source;
};

struct SheetColumn {
  std::optional<double> width;  ///< in characters
  bool hidden = false;
  bool text = false;  ///< its empty cells take texts
};

struct SheetModel {
  std::string name = "Sheet1";
  TextSet texts;
  CellTable cells;  ///< texts and blank ones only
  std::vector<CellRange> bold;
  std::vector<ListValidation> validations;
  std::map<int, SheetColumn> columns;

  bool isBold(const Cell& cell) const {
    return std::ranges::any_of(bold, [&](const CellRange& range) {
      return cell.row >= range.firstRow && cell.row <= range.lastRow &&
             cell.column >= range.firstColumn && cell.column <= range.lastColumn;
    });
  }
};

}  // namespace velk::xls
