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

[[noreturn]] Date dateOf(Null, int) {
  throw RuntimeError(ErrorNumber::InvalidUseOfNull);
}
Date dateOf(Date date, int) {
  return date;
}

/// Whole numbers come here, too.
Date dateOf(double days, int) {
  if (!isInCalendar(days)) throw RuntimeError(ErrorNumber::Overflow);
  return {days};
}

Date dateOf(const std::string& text, int currentYear) {
  const std::optional<DateReading> reading = readDate(text, currentYear);
  if (!reading) throw RuntimeError(ErrorNumber::TypeMismatch);
  return reading->date;
}

[[noreturn]] std::int32_t int32Of(Null) {
  throw RuntimeError(ErrorNumber::InvalidUseOfNull);
}
std::int32_t int32Of(std::int32_t number) {
  return number;
}

std::int32_t int32Of(double number) {
  using Limits = std::numeric_limits<std::int32_t>;
  // Halves to even: the default rounding, which nobody changes. Written so that NaN overflows.
  const double rounded = std::nearbyint(number);
  if (!(rounded >= Limits::min() && rounded <= Limits::max())) {
    throw RuntimeError(ErrorNumber::Overflow);
  }
  return static_cast<std::int32_t>(rounded);
}

std::int32_t int32Of(Date date) {
  return int32Of(date.days);
}

std::int32_t int32Of(const std::string& text) {
  const std::optional<double> number = parseNumber(text);
  if (!number) throw RuntimeError(ErrorNumber::TypeMismatch);
  return int32Of(*number);
}

}  // namespace

std::string toText(const Value& value) {
  return std::visit([](const auto& held) { return textOf(held); }, value);
}

Date toDate(const Value& value, int currentYear) {
  return std::visit([=](const auto& held) { return dateOf(held, currentYear); }, value);
}

std::int32_t toInt32(const Value& value) {
  return std::visit([](const auto& held) { return int32Of(held); }, value);
}

}  // namespace velk
