// What is read of a workbook: the first worksheet's cells, and the formats in which their numbers
// show.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/spreadsheet.h"
#include "platform/spreadsheet/number_format.h"
#include "platform/spreadsheet/sheet_sink.h"
#include "platform/spreadsheet/text_pool.h"
#include "platform/spreadsheet/xls/sheet_data.h"

namespace velk::xls {

/// Rows and columns count from 0.
struct SheetContents {
  struct Number {
    double value;
    std::uint16_t cellFormat;
  };

  std::string hiddenName;  ///< the sheet's, if users do not see it
  TextPool texts;
  CellTable cells;
  std::vector<Number> numbers;
  std::vector<NumberFormat> formats{NumberFormat(builtInFormat(0))};  ///< the general one first
  std::vector<std::uint16_t> cellFormats;                             ///< positions in `formats`
  /// Those that users do not see; also by a filter.
  std::bitset<maxSheetRows> hiddenRows;
  std::bitset<maxSheetColumns> hiddenColumns;
  bool from1904 = false;  ///< dates count from 1904, not 1900

  std::string text(std::size_t row, std::size_t column) const;
  CellNature nature(std::size_t row, std::size_t column) const;
  /// All of a cell but its text.
  SheetCell described(const Cell& cell) const;

 private:
  const NumberFormat& formatOf(const Number& number) const;
};

}  // namespace velk::xls
