#include <algorithm>
#include <array>

#include "base/text.h"
#include "platform/native/native_shell.h"

namespace velk {

namespace {

/// Whether the Command Prompt and PowerShell both pass it on as it is, without quotes.
bool isPlain(std::string_view word) {
  // PowerShell cuts an option at a point or colon.
  const std::string_view signs = word.starts_with('-') ? "-_=" : "-_=+./:\\";
  return !word.empty() && std::ranges::all_of(word, [&](char c) {
    return isDigit(c) || (lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z') ||
           signs.find(c) != std::string_view::npos;
  });
}

/// Whether it does not end its quotes, and nothing between them is replaced or run.
bool isSafeInQuotes(std::string_view word) {
  // To PowerShell curved double quotes are quotes, too.
  constexpr auto replaced =
      std::to_array<std::string_view>({"\"", "%", "$", "`", "\u201C", "\u201D", "\u201E"});
  return !word.ends_with('\\') &&
         std::ranges::none_of(word, [](char c) { return c >= 0 && c < ' '; }) &&
         std::ranges::none_of(replaced, [&](std::string_view sign) {
           return word.find(sign) != std::string_view::npos;
         });
}

}  // namespace

std::optional<std::string> shellWord(std::string_view word) {
  if (isPlain(word)) return std::string(word);
  if (!isSafeInQuotes(word)) return std::nullopt;
  return '"' + std::string(word) + '"';
}

}  // namespace velk
