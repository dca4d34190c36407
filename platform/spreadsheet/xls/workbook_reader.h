// Reads a workbook stream: the contents of its cells, and the formats in which their numbers show.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/number_format.h"
#include "platform/spreadsheet/xls/sheet_data.h"

namespace velk::xls {

/// The first worksheet.
struct SheetContents {
  struct Number {
    double value;
    std::uint16_t cellFormat;
  };

  TextPool texts;
  CellTable cells;
  std::vector<Number> numbers;
  std::vector<NumberFormat> formats{NumberFormat(builtInFormat(0))};  ///< the general one first
  std::vector<std::uint16_t> cellFormats;                             ///< positions in `formats`
  bool from1904 = false;  ///< dates count from 1904, not 1900

  /// Rows and columns count from 0.
  std::string text(std::size_t row, std::size_t column) const;
};

/// Error 321 for a stream of an older version, one that is encrypted, damaged or has no worksheet.
/// Memory stays within a small multiple of the stream's length.
SheetContents readWorkbook(std::string_view stream);

}  // namespace velk::xls
