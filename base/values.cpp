#include "base/values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"

namespace velk {

namespace {

std::string textOf(Null) {
  return {};
}
std::string textOf(const std::string& text) {
  return text;
}

std::string textOf(std::int32_t number) {
  return std::to_string(number);
}

std::string textOf(double number) {
  constexpr int significantDigits = 15;  // as many as every double keeps of a decimal number
  if (number == 0) return "0";           // else -0 would show its sign
  std::array<char, 32> text;
  char* const end = std::to_chars(text.data(), text.data() + text.size(), number,
                                  std::chars_format::general, significantDigits)
                        .ptr;
  // The runtime writes a capital letter: 1E+15.
  std::replace(text.data(), end, 'e', 'E');
  return {text.data(), end};
}

std::string textOf(Date date) {
  // From the form that rounds to the second, so that date and time agree on the day.
  const std::string iso = formatIso(date);
  std::string text = iso.substr(8, 2) + '/' + iso.substr(5, 2) + '/' + iso.substr(0, 4);
  if (const std::string time = iso.substr(10); time != " 00:00:00") text += time;
  return text;
}

[[noreturn]] double doubleOf(Null) {
  throw RuntimeError(ErrorNumber::InvalidUseOfNull);
}
/// Whole numbers come here, too.
double doubleOf(double number) {
  return number;
}
double doubleOf(Date date) {
  return date.days;
}

double doubleOf(const std::string& text) {
  const std::optional<double> number = parseNumber(text);
  if (!number) throw RuntimeError(ErrorNumber::TypeMismatch);
  return *number;
}

}  // namespace

std::string toText(const Value& value) {
  return std::visit([](const auto& held) { return textOf(held); }, value);
}

double toDouble(const Value& value) {
  return std::visit([](const auto& held) { return doubleOf(held); }, value);
}

Date toDate(const Value& value, int currentYear) {
  if (const auto* date = std::get_if<Date>(&value)) return *date;
  if (const auto* text = std::get_if<std::string>(&value)) {
    const std::optional<DateReading> reading = readDate(*text, currentYear);
    if (!reading) throw RuntimeError(ErrorNumber::TypeMismatch);
    return reading->date;
  }
  const double days = toDouble(value);
  if (!isInCalendar(days)) throw RuntimeError(ErrorNumber::Overflow);
  return {days};
}

std::int32_t toInt32(const Value& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  // Halves to even: the default rounding, which nobody changes. Written so that NaN overflows.
  const double rounded = std::nearbyint(toDouble(value));
  if (!(rounded >= Limits::min() && rounded <= Limits::max())) {
    throw RuntimeError(ErrorNumber::Overflow);
  }
  return static_cast<std::int32_t>(rounded);
}

}  // namespace velk
