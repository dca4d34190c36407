#include "base/dates.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace velk {

namespace {

// The automation runtime counts from this day, so that 1 January 1900 is day 2.
constexpr std::chrono::sys_days dayZero{std::chrono::year{1899} / 12 / 30};

std::chrono::year_month_day calendarDay(const CivilDate& civil) {
  return {std::chrono::year{civil.year}, std::chrono::month{static_cast<unsigned>(civil.month)},
          std::chrono::day{static_cast<unsigned>(civil.day)}};
}

/// What is no day at all (a driver's mistake) is taken at the nearest end, so that the conversion
/// to a whole number stays defined.
int dayNumber(Date date) {
  // Written so that what is not a number ends here, too.
  if (!(date.days > firstCalendarDay)) return firstCalendarDay;
  // Towards zero on both sides, because the fraction counts away from day 0 on both.
  return static_cast<int>(std::min<double>(std::trunc(date.days), lastCalendarDay));
}

template <class... Numbers>
std::string print(const char* format, Numbers... numbers) {
  char text[80];  // enough for any six integers: the compiler checks that nothing is cut
  const int length = std::snprintf(text, sizeof text, format, numbers...);
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace

bool isCivil(const CivilDate& civil) {
  // The calendar types hold fewer bits than an int, so each part is bounded first.
  return civil.year >= 100 && civil.year <= 9999 && civil.month >= 1 && civil.month <= 12 &&
         civil.day >= 1 && civil.day <= 31 && calendarDay(civil).ok();
}

Date dateFromCivil(const CivilDate& civil, double timeOfDay) {
  const auto day =
      static_cast<double>((std::chrono::sys_days{calendarDay(civil)} - dayZero).count());
  // Before day 0 the fraction counts away from it.
  return {day < 0 ? day - timeOfDay : day + timeOfDay};
}

CivilDate civilFromDate(Date date) {
  const std::chrono::year_month_day day{dayZero + std::chrono::days{dayNumber(date)}};
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

std::string formatDayFirst(Date date) {
  const CivilDate civil = civilFromDate(date);
  return print("%02d/%02d/%04d", civil.day, civil.month, civil.year);
}

std::string formatIso(Date date) {
  int day = dayNumber(date);
  // An infinity has no remainder: lround would get what is not a number.
  const double fraction = std::isfinite(date.days) ? std::abs(std::fmod(date.days, 1.0)) : 0.0;
  int second = static_cast<int>(std::lround(fraction * secondsPerDay));
  // Half a second before midnight rounds into the next day, unless there is none.
  if (second == secondsPerDay && day == lastCalendarDay) --second;
  day += second / secondsPerDay;
  second %= secondsPerDay;
  const CivilDate civil = civilFromDate({static_cast<double>(day)});
  return print("%04d-%02d-%02d %02d:%02d:%02d", civil.year, civil.month, civil.day, second / 3600,
               second / 60 % 60, second % 60);
}

}  // namespace velk
