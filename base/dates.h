// Dates as the database and the automation runtime count them, and the reader of date texts.
//
// A Date is an OLE automation date: days since 30 December 1899 as a double, the time of day in the
// fraction. Before that day the fraction counts away from it: -1.25 is six in the morning of 29
// December 1899. Years run from 100 to 9999; a Date outside them is taken at the nearest end.
//
// Date texts are always read day first, whatever the machine's locale says, so that one file gives
// one ledger on every machine.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace velk {

inline constexpr int secondsPerDay = 24 * 60 * 60;

struct Date {
  double days = 0;
  auto operator<=>(const Date&) const = default;
};

struct CivilDate {
  int year;
  int month;
  int day;
  bool operator==(const CivilDate&) const = default;
};

/// The order of the numbers that read a date text. A month by name says nothing about it: "Mar 5,
/// 2008" counts as day-month-year, as does a text without a day.
enum class DateOrder { DayMonthYear, MonthDayYear, YearMonthDay };

struct DateReading {
  Date date;
  DateOrder order = DateOrder::DayMonthYear;
  /// True when the text reads as another date with month and day exchanged (03/04/2008): a file
  /// written month first would be misread without any error.
  bool ambiguous = false;
};

/// True when the three numbers name a day of the calendar within the years 100 to 9999.
bool isCivil(const CivilDate& civil);

/// The whole day. The civil date has to be one (isCivil).
Date dateFromCivil(const CivilDate& civil);
CivilDate civilFromDate(Date date);

/// Reads a date text: day-month-year, else month-day-year, else year-month-day, whichever is the
/// first that names a real day. Parts are separated by one of "/", "-", ".", "," with or without
/// blanks around it, or by blanks alone; nothing need stand between a number and a name. The month
/// may be an English name or its first three letters, in any letter case, before or behind the
/// numbers; a name of a week day is passed over. Years have one to four digits, those of one and
/// two being 1930 to 2029; a year that comes first, or without a day, has three or four. Blanks
/// around the whole do not count.
///
/// Two numbers are day and month, else month and day, of `currentYear`, else month and year, else
/// year and month, meaning the first of that month: 31/12, 12/31, 3/2008, 2008/3. A month's name
/// with one number likewise: Mar 31, Mar 2008.
///
/// A time of day may stand behind the date, or in front of it, apart by blanks or a comma, and
/// becomes the fraction: "10:30", "10:30:15 pm", "10:30:15.250", "10 pm"; hours 0 to 23.
///
/// No date: a number alone, a time alone, a decimal number ("31.12", "31,12") or one in groups
/// ("1,23,456"), anything that names no real day (31/02/2008, 31/02), anything left over.
std::optional<DateReading> readDate(std::string_view text, int currentYear);

/// "DD/MM/YYYY", the time of day dropped.
std::string formatDayFirst(Date date);

/// "YYYY-MM-DD HH:MM:SS", rounded to the second.
std::string formatIso(Date date);

}  // namespace velk
