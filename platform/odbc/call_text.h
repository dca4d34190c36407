// The text of a procedure's call.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace velk {

/// "{call name(?, ?)}", the interface's own way to call a procedure, or the engine's.
inline std::string callText(std::string before, std::string_view name, std::size_t parameterCount,
                            std::string_view after) {
  std::string text = std::move(before.append(name));
  for (std::size_t i = 0; i < parameterCount; ++i) text += i == 0 ? "(?" : ", ?";
  // Only the interface's own way knows calls without parentheses.
  if (parameterCount == 0 && after.empty()) text += '(';
  if (parameterCount > 0 || after.empty()) text += ')';
  return text.append(after);
}

}  // namespace velk
