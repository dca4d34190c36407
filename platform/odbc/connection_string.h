// What a connection string says.
#pragma once

#include <string>
#include <string_view>

#include "base/text.h"

namespace velk {

/// True where a value of this keyword begins so, in any letter case; the braces around a value do
/// not count. Keywords are taken without blanks around them, as they are mostly written.
inline bool hasKeyword(std::string_view connectionString, std::string_view name,
                       std::string_view value = {}) {
  // With the separator, so that a keyword is not found at the end of a longer one.
  const std::string lowered = ";" + lowerAscii(connectionString);
  const std::string start = ";" + lowerAscii(name) + "=";
  const std::string end = lowerAscii(value);
  return lowered.find(start + end) != std::string::npos ||
         lowered.find(start + "{" + end) != std::string::npos;
}

}  // namespace velk
