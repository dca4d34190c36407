#include "base/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

/// A number at the start of a text, and how much of the text it takes; 0 when there is none.
struct NumberRun {
  double value = 0;
  std::size_t length = 0;
};

/// Whether a number outside a double's range is above it rather than below. The power of ten of the
/// first digit that is not zero decides; next to a double's range an error of one does not matter.
bool isHuge(std::string_view run) {
  const std::size_t letter = std::min(run.find('e'), run.size());
  const std::size_t point = std::min(run.find('.'), letter);
  const std::size_t significant = std::min(run.find_first_of("123456789"), letter);
  const std::string_view exponent = run.substr(std::min(letter + 1, run.size()));
  const std::size_t sign = exponent.starts_with('-') || exponent.starts_with('+') ? 1 : 0;
  double written = exponent.empty() ? 0 : HUGE_VAL;  // and stays so where it has too many digits
  std::from_chars(exponent.data() + sign, exponent.data() + exponent.size(), written);
  const double power = static_cast<double>(point) - static_cast<double>(significant);
  return power + (exponent.starts_with('-') ? -written : written) > 0;
}

bool isMantissa(char c) {
  return isDigit(c) || c == '.';
}

/// Of a text that begins with a digit or a point.
NumberRun readUnsigned(std::string_view digits) {
  double value = 0;
  const auto [behind, failure] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (failure == std::errc::invalid_argument) return {};
  const auto length = static_cast<std::size_t>(behind - digits.data());
  if (failure == std::errc::result_out_of_range || std::isinf(value)) {
    if (isHuge(digits.substr(0, length))) throw RuntimeError(ErrorNumber::Overflow);
    // Closer to zero than any double.
    value = 0;
  }
  return {value, length};
}

NumberRun readNumber(std::string_view text) {
  const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  const std::string_view digits = text.substr(sign);
  // from_chars takes the longest run that is a number, but knows no plus sign and no exponent after
  // another letter than a small e, and takes infinities, too.
  const auto letter =
      static_cast<std::size_t>(std::ranges::find_if_not(digits, isMantissa) - digits.begin());
  if (letter == 0) return {};
  NumberRun run;
  if (letter < digits.size() &&
      std::string_view("EDd").find(digits[letter]) != std::string_view::npos) {
    std::string known(digits);
    known[letter] = 'e';
    run = readUnsigned(known);
  } else {
    run = readUnsigned(digits);
  }
  if (run.length == 0) return {};
  return {text.starts_with('-') ? -run.value : run.value, sign + run.length};
}

}  // namespace

double leadingNumber(std::string_view text) {
  // Blanks only: a text that begins with a tab counts as 0.
  return readNumber(text.substr(std::min(text.find_first_not_of(' '), text.size()))).value;
}

std::optional<double> parseNumber(std::string_view text) {
  const std::string_view trimmed = trim(text);
  const NumberRun run = readNumber(trimmed);
  // An empty text takes none of its characters, which would pass for all of them.
  if (run.length == 0 || run.length != trimmed.size()) return std::nullopt;
  return run.value;
}

std::int16_t toInt16(std::int64_t number) {
  using Limits = std::numeric_limits<std::int16_t>;
  if (number < Limits::min() || number > Limits::max()) throw RuntimeError(ErrorNumber::Overflow);
  return static_cast<std::int16_t>(number);
}

std::string grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t place = digits.size(); place > 3; place -= 3) digits.insert(place - 3, 1, ',');
  return digits;
}

}  // namespace velk
