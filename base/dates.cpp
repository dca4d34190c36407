#include "base/dates.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace velk {

namespace {

constexpr std::chrono::sys_days dayZero{std::chrono::year{1899} / 12 / 30};
constexpr int firstDay = (std::chrono::sys_days{std::chrono::year{100} / 1 / 1} - dayZero).count();
constexpr int lastDay =
    (std::chrono::sys_days{std::chrono::year{9999} / 12 / 31} - dayZero).count();

std::chrono::year_month_day calendarDay(const CivilDate& civil) {
  return {std::chrono::year{civil.year}, std::chrono::month{static_cast<unsigned>(civil.month)},
          std::chrono::day{static_cast<unsigned>(civil.day)}};
}

/// What is no day at all (a driver's mistake) is taken at the nearest end, so that the conversion
/// to a whole number stays defined.
int dayNumber(Date date) {
  if (!(date.days > firstDay)) return firstDay;
  return static_cast<int>(std::min<double>(std::trunc(date.days), lastDay));
}

CivilDate civilFromDayNumber(int number) {
  const std::chrono::year_month_day day{dayZero + std::chrono::days{number}};
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

/// Writes the last `width` decimal digits of a number.
char* putDigits(char* to, int number, int width) {
  for (int i = width - 1; i >= 0; --i, number /= 10) to[i] = static_cast<char>('0' + number % 10);
  return to + width;
}

char* putTriple(char* to, const std::array<int, 3>& numbers, int firstWidth, int lastWidth,
                char separator) {
  to = putDigits(to, numbers[0], firstWidth);
  *to++ = separator;
  to = putDigits(to, numbers[1], 2);
  *to++ = separator;
  return putDigits(to, numbers[2], lastWidth);
}

}  // namespace

bool isCivil(const CivilDate& civil) {
  // The calendar types hold fewer bits than an int, so each part is bounded first.
  return civil.year >= 100 && civil.year <= 9999 && civil.month >= 1 && civil.month <= 12 &&
         civil.day >= 1 && civil.day <= 31 && calendarDay(civil).ok();
}

Date dateFromCivil(const CivilDate& civil) {
  return {static_cast<double>((std::chrono::sys_days{calendarDay(civil)} - dayZero).count())};
}

CivilDate civilFromDate(Date date) {
  return civilFromDayNumber(dayNumber(date));
}

std::string formatDayFirst(Date date) {
  const CivilDate civil = civilFromDate(date);
  std::array<char, 10> text{};
  putTriple(text.data(), {civil.day, civil.month, civil.year}, 2, 4, '/');
  return {text.begin(), text.end()};
}

std::string formatIso(Date date) {
  int day = dayNumber(date);
  const double fraction = std::isfinite(date.days) ? std::abs(std::fmod(date.days, 1.0)) : 0.0;
  int second = static_cast<int>(std::lround(fraction * secondsPerDay));
  if (second == secondsPerDay && day == lastDay) --second;
  day += second / secondsPerDay;
  second %= secondsPerDay;

  const CivilDate civil = civilFromDayNumber(day);
  std::array<char, 19> text{};
  char* to = putTriple(text.data(), {civil.year, civil.month, civil.day}, 4, 2, '-');
  *to++ = ' ';
  putTriple(to, {second / 3600, second / 60 % 60, second % 60}, 2, 2, ':');
  return {text.begin(), text.end()};
}

}  // namespace velk
