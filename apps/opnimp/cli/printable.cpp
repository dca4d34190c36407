#include "apps/opnimp/cli/printable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "base/text.h"

namespace velk {

namespace {

// Controls; marks, embeddings, overrides and isolates of direction; the two separators of lines.
bool steersTerminal(char16_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x061C || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

std::string escaped(char16_t c) {
  std::array<char, sizeof "\\uFFFF"> text;
  std::snprintf(text.data(), text.size(), c < 0x100 ? "\\x%02X" : "\\u%04X", unsigned{c});
  return text.data();
}

// Every character has one byte of UTF-8 that is no continuation: counting those counts characters.
bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

std::string printable(std::string_view text) {
  std::u16string shown;
  // The way through UTF-16 also replaces every byte that is no UTF-8.
  for (const char16_t c : toUtf16(text)) {
    shown += steersTerminal(c) ? toUtf16(escaped(c)) : std::u16string(1, c);
  }
  return toUtf8(shown);
}

std::string printableLines(std::string_view text) {
  std::string lines;
  for (;;) {
    // Only the pair, with which messages break their lines; a bare line feed may come from a file.
    const std::size_t end = text.find("\r\n");
    lines += printable(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    lines += '\n';
    text.remove_prefix(end + 2);
  }
}

std::string_view withoutEnd(std::string_view sentence) {
  return sentence.substr(0, sentence.find_last_not_of(" \r\n.?!") + 1);
}

std::size_t textWidth(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return !isContinuation(c); }));
}

// The cut is before a whole character, so that the text stays valid UTF-8.
std::string cutTo(std::string_view text, std::size_t width) {
  if (textWidth(text) <= width) return std::string(text);
  constexpr std::string_view dots = "...";
  std::size_t characters = 0;
  std::size_t end = 0;
  for (; end < text.size(); ++end) {
    if (!isContinuation(text[end]) && characters++ == width - dots.size()) break;
  }
  return std::string(text.substr(0, end)).append(dots);
}

std::string padRight(std::string text, std::size_t width) {
  const std::size_t used = textWidth(text);
  return used < width ? text.append(width - used, ' ') : text;
}

std::string padLeft(std::string text, std::size_t width) {
  const std::size_t used = textWidth(text);
  return used < width ? text.insert(0, width - used, ' ') : text;
}

std::string counted(std::uint64_t number, std::string_view one, std::string_view many) {
  return grouped(number).append(" ").append(number == 1 ? one : many);
}

std::string listed(std::span<const std::string> titles) {
  // A file may have thousands of columns, and this becomes part of one sentence.
  constexpr std::size_t mostNamed = 30;
  std::string text;
  for (const std::string& title : titles.first(std::min(titles.size(), mostNamed))) {
    text.append(text.empty() ? "" : ", ").append(title);
  }
  return titles.size() > mostNamed ? text + ", ..." : text;
}

std::string money(long double amount) {
  constexpr double largestFixed = 1e15;  // beyond it a double has no two exact decimals
  const auto value = static_cast<double>(amount);
  const bool fixed = std::abs(value) < largestFixed;
  // The longest text has a sign, 15 digits, the point and two decimals, or an exponent.
  std::array<char, 32> buffer;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                    fixed ? std::chars_format::fixed : std::chars_format::general, fixed ? 2 : 15);
  const std::string text(buffer.data(), end.ptr);  // a small negative amount rounds to a signed 0
  return text == "-0.00" ? "0.00" : text;
}

std::string groupedMoney(long double amount) {
  std::string text = money(amount);
  const std::size_t point = text.find('.');
  // An amount too large for a point has an exponent, or too many digits to be read in groups.
  if (point == std::string::npos || text.find('e') != std::string::npos) return text;
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  for (std::size_t at = point; at > first + 3;) text.insert(at -= 3, 1, ',');
  return text;
}

}  // namespace velk
