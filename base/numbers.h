// Numbers in texts that users wrote.
#pragma once

#include <bit>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velk {

/// The leading-number rule: blanks (U+0020) at the start are skipped, then the longest run that
/// reads as a number is taken: sign, digits, one point, digits, and an exponent after E or D in
/// either letter case. Text without such a run gives 0; no hexadecimal, no thousands separators, no
/// locale. Error 6 when the number is beyond a double's range; one too small for it gives 0.
double leadingNumber(std::string_view text);

/// A text that is a number from end to end by the same rule, blanks around it apart; empty where
/// anything is left over.
std::optional<double> parseNumber(std::string_view text);

/// A number as machines write it, digits from end to end with nothing around or between but a minus
/// and, for doubles, point, exponent, inf and nan. Empty for any other text, and beyond the type's
/// range.
template <class Number>
std::optional<Number> exactNumber(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

/// Of "#12" the 12, which is how users name the 12th of something; empty for any other text.
inline std::optional<std::size_t> ordinalNumber(std::string_view text) {
  return text.starts_with('#') ? exactNumber<std::size_t>(text.substr(1)) : std::nullopt;
}

/// True when a double holds the integer without rounding. Its bits tell; a conversion there and
/// back does not, where the compiler keeps it in a wider register (as for x86).
template <std::integral Integer>
constexpr bool fitsDouble(Integer number) {
  auto magnitude = static_cast<std::uint64_t>(number);
  if (std::cmp_less(number, 0)) magnitude = 0 - magnitude;
  const int bits = std::numeric_limits<std::uint64_t>::digits - std::countl_zero(magnitude) -
                   std::countr_zero(magnitude);
  return bits <= std::numeric_limits<double>::digits;
}

/// Error 6 when the number does not fit 16 bits; else the number.
std::int16_t toInt16(std::int64_t number);

/// As people write it: "12,345".
std::string grouped(std::uint64_t number);

}  // namespace velk
