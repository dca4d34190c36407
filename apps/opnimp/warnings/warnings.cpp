#include "apps/opnimp/warnings/warnings.h"

#include <algorithm>

namespace velk {

void Warnings::add(std::string_view code, std::string_view text, std::size_t line,
                   std::size_t times) {
  auto found = std::ranges::find(warnings_, code, &Warning::code);
  if (found == warnings_.end()) found = warnings_.insert(found, Warning{code, text, 0, {}});
  found->count += times;
  const bool listed = !found->lines.empty() && found->lines.back() == line;
  if (line != 0 && !listed && found->lines.size() < mostLines) found->lines.push_back(line);
}

std::vector<Warning> findWarnings(const InputRecords& input, const ImportKind& kind,
                                  const std::vector<FieldMapping>& mapping, int currentYear) {
  Warnings warnings;
  input.findWarnings(kind, mapping, currentYear, warnings);
  return warnings.take();
}

}  // namespace velk
