// Things about a file that change nothing in how it is imported, but that its owner would want to
// know before, because the result is often not what was meant.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace velk {

struct WarningText {
  std::string_view code;  ///< for programs
  std::string_view text;  ///< what it means for the import
};

/// A row of a table of warnings. An empty code says that nothing is wrong.
template <class Subject>
struct WarningCheck {
  WarningText warning;
  bool (*applies)(const Subject&);
};

/// The first row that applies; empty texts if none does.
template <class Subject, std::size_t count>
WarningText firstWarning(const WarningCheck<Subject> (&checks)[count],
                         const std::type_identity_t<Subject>& subject) {
  const auto* const found =
      std::ranges::find_if(checks, [&](const auto& check) { return check.applies(subject); });
  return found == std::end(checks) ? WarningText{} : found->warning;
}

struct Warning {
  std::string_view code;
  std::string_view text;
  std::size_t count = 0;           ///< how often it was found
  std::vector<std::size_t> lines;  ///< the first lines, or rows of a sheet; empty: the whole file
};

class Warnings {
 public:
  static constexpr std::size_t mostLines = 5;
  static constexpr std::size_t wholeFile = 0;  ///< in place of a line

  /// Counts one more finding, unless the code is empty; `line` is wholeFile if it has none.
  void add(const WarningText& warning, std::size_t line);
  std::vector<Warning> take() { return std::move(warnings_); }

 private:
  std::vector<Warning> warnings_;
};

}  // namespace velk
