// The reader of date texts. They are always read day first, whatever the machine's locale says, so
// that one file gives one ledger on every machine.
#pragma once

#include <optional>
#include <string_view>

#include "base/dates.h"

namespace velk {

/// The order of the numbers that read a date text. A month by name says nothing about it: "Mar 5,
/// 2008" counts as day-month-year, as does a text without a day.
enum class DateOrder { DayMonthYear, MonthDayYear, YearMonthDay };

struct DateReading {
  Date date;
  DateOrder order = DateOrder::DayMonthYear;
  /// True when the text reads as another date with month and day exchanged (03/04/2008): a file
  /// written month first would be misread without any error.
  bool ambiguous = false;
  bool hasYear = true;  ///< else it is the current one
  bool hasDay = true;   ///< else it is the first of the month
  bool namesMonth = false;
};

/// Reads a date text: day-month-year, else month-day-year, else year-month-day, whichever is the
/// first that names a real day. Parts are separated by one of "/", "-", ".", "," with or without
/// blanks around it, or by blanks alone; between a number and a name nothing is needed. The month
/// may be an English name or its first three letters, in any letter case, before or after the
/// numbers; the name of a week day is passed over. Years have one to four digits, those of one and
/// two being 1930 to 2029; a year that comes first, or without a day, has three or four. Blanks
/// around the whole do not count.
///
/// Two numbers are day and month, else month and day, of `currentYear`, else month and year, else
/// year and month, meaning the first of that month: 31/12, 12/31, 3/2008, 2008/3. A month's name
/// with one number likewise: Mar 31, Mar 2008.
///
/// A time of day may follow the date or precede it, apart by blanks or a comma, and becomes the
/// fraction: "10:30", "10:30:15 pm", "10:30:15.250", "10 pm"; hours 0 to 23.
///
/// No date: a number alone, a time alone, a decimal number ("31.12", "31,12") or one in groups
/// ("1,23,456"), anything that names no real day (31/02/2008, 31/02), anything left over.
std::optional<DateReading> readDate(std::string_view text, int currentYear);

}  // namespace velk
