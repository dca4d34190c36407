#include "apps/opnimp/warnings/warnings.h"

#include <algorithm>

namespace velk {

void addWarning(std::vector<Warning>& warnings, const WarningText& warning, std::size_t line) {
  if (warning.code.empty()) return;
  auto found = std::ranges::find(warnings, warning.code, &Warning::code);
  if (found == warnings.end()) found = warnings.insert(found, Warning{warning, 0, {}});
  ++found->count;
  // Several findings of one line count each, but name it once.
  const bool listed = !found->lines.empty() && found->lines.back() == line;
  if (line == wholeFile || listed || found->lines.size() == mostWarningLines) return;
  found->lines.push_back(line);
}

}  // namespace velk
