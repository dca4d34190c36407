// What a conversion took for granted, and why.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velk {

/// Which sheet of a workbook was read.
inline constexpr std::string_view sheetAssumption = "sheet";

struct Assumption {
  std::string what;    ///< such as "delimiter"
  std::string value;   ///< such as "semicolon"
  std::string reason;  ///< such as "214 of 214 lines have 5 fields"
  std::string option;  ///< that says otherwise; empty if none does
};

/// The value of one; empty if it was not assumed.
inline std::string_view assumedValue(const std::vector<Assumption>& assumptions,
                                     std::string_view what) {
  for (const Assumption& assumption : assumptions) {
    if (assumption.what == what) return assumption.value;
  }
  return {};
}

}  // namespace velk
