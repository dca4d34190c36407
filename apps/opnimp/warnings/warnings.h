// Things about a file that change nothing in how it is imported, but that its owner would want to
// know before, because the result is often not what was meant.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace velk {

/// An empty code says that nothing is wrong.
struct WarningText {
  std::string_view code;  ///< for programs
  std::string_view text;  ///< what it means for the import
};

struct Warning : WarningText {
  std::size_t count = 0;           ///< how often it was found
  std::vector<std::size_t> lines;  ///< the first lines, or rows of a sheet; empty: the whole file
};

inline constexpr std::size_t mostWarningLines = 5;
inline constexpr std::size_t wholeFile = 0;  ///< in place of a line

/// Counts one more finding, unless the code is empty; `line` is wholeFile if it has none.
void addWarning(std::vector<Warning>& warnings, const WarningText& warning, std::size_t line);

}  // namespace velk
