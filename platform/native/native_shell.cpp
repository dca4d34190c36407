#include "platform/native/native_shell.h"

#include <algorithm>

#include "base/text.h"

namespace velk {

std::optional<std::string> shellWord(std::string_view word) {
  constexpr std::string_view plainSigns = "_-./:=,+@%#";
  const bool isPlain =
      !word.empty() && word.front() != '#' && std::ranges::all_of(word, [&](char c) {
        return isDigit(c) || (lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z') ||
               plainSigns.find(c) != std::string_view::npos;
      });
  if (isPlain) return std::string(word);
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

}  // namespace velk
