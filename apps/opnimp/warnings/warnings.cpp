#include "apps/opnimp/warnings/warnings.h"

namespace velk {

void Warnings::add(const WarningText& warning, std::size_t line) {
  if (warning.code.empty()) return;
  auto found = std::ranges::find(warnings_, warning.code, &Warning::code);
  if (found == warnings_.end()) {
    found = warnings_.insert(found, Warning{warning.code, warning.text, 0, {}});
  }
  ++found->count;
  // Several findings of one line count each, but name it once.
  const bool listed = !found->lines.empty() && found->lines.back() == line;
  if (line != wholeFile && !listed && found->lines.size() < mostLines) found->lines.push_back(line);
}

}  // namespace velk
