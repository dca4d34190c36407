// The cells of a workbook's sheets as they are read, one after the other.
#pragma once

#include <bitset>
#include <cstdint>
#include <string_view>

namespace velk {

/// A cell that is not blank.
struct SheetCell {
  enum class Kind : std::uint8_t {
    Text,
    Number,
    Date,     ///< a number that shows as one
    Error,    ///< that a formula came to
    NoResult  ///< a formula that was never calculated
  };

  std::uint32_t row = 0;  ///< from 1, as columns
  std::uint32_t column = 0;
  Kind kind = Kind::Text;
  double value = 0;            ///< of a Number; of a Date as base/dates.h counts
  std::string_view text = {};  ///< as WorksheetReader::text(), in UTF-8
  bool isHidden = false;       ///< its row or column is, also by a filter
};

/// Limits of the formats that are read.
inline constexpr std::uint32_t mostSheetRows = 1048576;
inline constexpr std::uint32_t mostSheetColumns = 16384;

/// Those that users do not see, by their numbers.
using HiddenColumns = std::bitset<mostSheetColumns + 1>;

class SheetSink {
 public:
  virtual ~SheetSink() = default;
  /// Each worksheet, in the order of the workbook; chart sheets do not count.
  virtual void sheet(std::string_view name, bool isHidden) = 0;
  /// Row by row, from left to right.
  virtual void cell(const SheetCell& cell) = 0;
};

}  // namespace velk
