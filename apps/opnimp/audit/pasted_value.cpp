#include "apps/opnimp/audit/pasted_value.h"

#include <algorithm>
#include <array>
#include <utility>

#include "masters/ds_type_rules.h"
#include "opening/opening_kinds.h"

namespace velk {

namespace {

/// What precedes and follows the value in each look-up that takes one so; all others pass
/// parameters.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> lookUps{
    {{customerOpening.existsQuery, "'"},
     {vendorOpening.existsQuery, "'"},
     {dsTypeQueryStart, dsTypeQueryEnd}}};

}  // namespace

bool pastesQuote(std::string_view query) {
  return std::ranges::any_of(lookUps, [&](const auto& lookUp) {
    const auto& [before, after] = lookUp;
    if (!query.starts_with(before)) return false;
    const std::string_view rest = query.substr(before.size());
    // The last one is the system's own: a value may contain such a text, too.
    return rest.substr(0, rest.rfind(after)).find('\'') != std::string_view::npos;
  });
}

}  // namespace velk
