// A file as people have it becomes the one that the screens read: windows-1252, commas, carriage
// return + line feed, the titles in the first line, dates day first, amounts with a point.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/kind_fields.h"
#include "apps/opnimp/convert/assumption.h"

namespace velk {

enum class CellOddity : std::uint8_t {
  NoResult,  ///< its formula was never calculated
  Error,     ///< its formula came to one
  Hidden     ///< users do not see its row or column
};

/// A cell of a worksheet that may not be what it seems to be.
struct OddCell {
  std::size_t line = 0;    ///< of the file
  std::size_t column = 0;  ///< from 0
  CellOddity oddity = CellOddity::NoResult;
  std::string text;  ///< that shows in it
};

struct Conversion {
  std::optional<std::string> bytes;  ///< empty: the screens read the file as it is
  std::vector<std::size_t> lines;    ///< in the file, of each line of `bytes`; empty: the same
  std::vector<Assumption> assumptions;
  /// Options that may help where the file is refused, as they are given.
  std::vector<std::string> choices;
  std::string refusal;  ///< what the file does not decide, or the screens cannot hold
  /// As they were given, or as some value shows them.
  std::optional<DateOrder> dateOrder{};
  std::optional<char> decimal{};
  /// Values with a comma, which the screens leave out: their number, and the first one's line.
  std::size_t commas = 0;
  std::size_t firstComma = 0;
  std::vector<FieldNature> natures;  ///< as each column was read; empty: as the screens do
  /// A comma in a value without quotes makes two values of it.
  bool isSplitAtCommas = true;
  bool isSheet = false;           ///< the file is a workbook, its lines being rows
  std::vector<OddCell> oddCells;  ///< of records, in the order of their lines
};

/// By the kind, the --map options and the ConvertOptions of the arguments. Raises UsageError for
/// options that do not go with the file.
Conversion convert(std::string_view bytes, const Arguments& arguments);
/// The same of a workbook, which always becomes another file.
Conversion convertWorkbook(std::string_view bytes, const Arguments& arguments);

}  // namespace velk
