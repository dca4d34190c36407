// Dates as the database and the automation runtime count them.
//
// A Date is an OLE automation date: days since 30 December 1899 as a double, the time of day in the
// fraction. Before that day the fraction counts away from it: -1.25 is six in the morning of 29
// December 1899. Years run from 100 to 9999; a Date outside them is taken at the nearest end.
#pragma once

#include <array>
#include <compare>
#include <string>
#include <string_view>

namespace velk {

inline constexpr int secondsPerDay = 24 * 60 * 60;

struct Date {
  double days = 0;
  auto operator<=>(const Date&) const = default;
};

inline constexpr int firstCalendarDay = -657434;  ///< 1 January 100
inline constexpr int lastCalendarDay = 2958465;   ///< 31 December 9999
/// True for every time from the first to the last day; the fraction counts away from day 0 on both
/// sides.
constexpr bool isInCalendar(double days) {
  return days > firstCalendarDay - 1 && days < lastCalendarDay + 1;
}

inline constexpr std::array<std::string_view, 12> monthNames{
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
/// From Saturday on, as day 0 was one.
inline constexpr std::array<std::string_view, 7> weekDayNames{
    "Saturday", "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday"};

struct CivilDate {
  int year;
  int month;
  int day;
  bool operator==(const CivilDate&) const = default;
};

/// True when the three numbers name a day of the calendar within the years 100 to 9999.
bool isCivil(const CivilDate& civil);

/// The day, and a time of it as a fraction. The civil date has to be one (isCivil).
Date dateFromCivil(const CivilDate& civil, double timeOfDay = 0);
CivilDate civilFromDate(Date date);

/// "DD/MM/YYYY", the time of day dropped.
std::string formatDayFirst(Date date);

/// "YYYY-MM-DD HH:MM:SS", rounded to the second.
std::string formatIso(Date date);

}  // namespace velk
