#include "apps/opnimp/cli/convert_options.h"

#include <algorithm>

namespace velk {

std::string ConvertOptions::origin(std::string_view option, std::string_view other) const {
  const auto isOption = [&](const std::string& name) { return name == option || name == other; };
  if (std::ranges::any_of(profileOptions, isOption)) return "from the profile " + profile;
  std::string reason = "given with " + std::string(option);
  return other.empty() ? reason : reason.append(" or ").append(other);
}

}  // namespace velk
