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

constexpr std::string_view digits = "0123456789";

/// The pieces of a number's text; `end` is the length of the whole run, 0 when there is none.
struct NumberRun {
  std::size_t mantissa = 0;  // behind the sign
  std::size_t exponent = 0;  // position of the letter; `end` when there is no exponent
  std::size_t end = 0;
};

std::size_t skipDigits(std::string_view text, std::size_t at) {
  return std::min(text.find_first_not_of(digits, at), text.size());
}

std::size_t skipSign(std::string_view text, std::size_t at) {
  return at < text.size() && (text[at] == '+' || text[at] == '-') ? at + 1 : at;
}

/// The end of an exponent that starts at `at`; `at` itself when there is none with digits.
std::size_t skipExponent(std::string_view text, std::size_t at) {
  constexpr std::string_view letters = "EeDd";
  if (at == text.size() || letters.find(text[at]) == std::string_view::npos) return at;
  const std::size_t first = skipSign(text, at + 1);
  const std::size_t end = skipDigits(text, first);
  return end == first ? at : end;
}

NumberRun findRun(std::string_view text) {
  const std::size_t start = skipSign(text, 0);
  const std::size_t point = skipDigits(text, start);
  const bool hasPoint = point < text.size() && text[point] == '.';
  const std::size_t end = hasPoint ? skipDigits(text, point + 1) : point;
  const std::size_t count = end - start - (hasPoint ? 1 : 0);
  if (count == 0) return {};
  return {start, end, skipExponent(text, end)};
}

/// Where a number beyond a double's range lies: above it rather than below. The power of ten of the
/// first digit that is not zero decides; next to a double's range an error of one does not matter.
bool isHuge(std::string_view mantissa, std::string_view exponent) {
  const std::size_t significant = std::min(mantissa.find_first_of("123456789"), mantissa.size());
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const auto power = static_cast<double>(point) - static_cast<double>(significant);
  double written = 0;
  for (const char digit : exponent.substr(skipSign(exponent, 0))) {
    written = written * 10 + (digit - '0');
  }
  return power + (exponent.starts_with('-') ? -written : written) > 0;
}

double readMagnitude(std::string_view mantissa, std::string_view exponent) {
  std::string withLetterE;  // from_chars knows no D and no + in front
  std::string_view text(mantissa.data(), mantissa.size());
  if (!exponent.empty()) {
    withLetterE.append(mantissa).append(1, 'e').append(exponent.substr(exponent[0] == '+' ? 1 : 0));
    text = withLetterE;
  }
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool outside = result.ec == std::errc::result_out_of_range || std::isinf(value);
  if (!outside) return value;
  if (isHuge(mantissa, exponent)) throw RuntimeError(ErrorNumber::Overflow);
  return 0;
}

double readRun(std::string_view text, const NumberRun& run) {
  const std::string_view mantissa = text.substr(run.mantissa, run.exponent - run.mantissa);
  const std::string_view exponent = run.exponent == run.end
                                        ? std::string_view()
                                        : text.substr(run.exponent + 1, run.end - run.exponent - 1);
  const double magnitude = readMagnitude(mantissa, exponent);
  return text[0] == '-' ? -magnitude : magnitude;
}

}  // namespace

double leadingNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const NumberRun run = findRun(text);
  return run.end == 0 ? 0 : readRun(text, run);
}

std::optional<double> wholeNumber(std::string_view text) {
  text = trim(text);
  const NumberRun run = findRun(text);
  if (run.end == 0 || run.end != text.size()) return std::nullopt;
  return readRun(text, run);
}

std::int16_t toInt16(std::int64_t number) {
  using Limits = std::numeric_limits<std::int16_t>;
  if (number < Limits::min() || number > Limits::max()) throw RuntimeError(ErrorNumber::Overflow);
  return static_cast<std::int16_t>(number);
}

}  // namespace velk
