#include "apps/opnimp/convert/date_text.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

/// Only of dates that have one, so that it matters to none of them.
constexpr int anyYear = 2000;

int numberOf(std::string_view digits) {
  return exactNumber<int>(digits).value_or(0);
}

DateText ofOrder(const CivilDate& date) {
  const bool dayFirst = isCivil(date);
  const CivilDate exchanged{date.year, date.day, date.month};
  const bool monthFirst = date.day <= 12 && isCivil(exchanged);
  if (dayFirst && date.day == date.month) return {DateClue::AnyOrder, date};
  if (dayFirst) return {monthFirst ? DateClue::EitherFirst : DateClue::DayFirst, date};
  return monthFirst ? DateText{DateClue::MonthFirst, exchanged} : DateText{};
}

/// 31/03/2008, which most dates look like.
std::optional<DateText> readUsual(std::string_view text) {
  constexpr std::size_t length = 10;
  if (text.size() != length || text[2] != text[5]) return std::nullopt;
  if (text[2] != '/' && text[2] != '-' && text[2] != '.') return std::nullopt;
  std::array<int, 3> parts{};
  for (std::size_t i = 0, part = 0; i < length; ++i) {
    if (i == 2 || i == 5) {
      ++part;
    } else if (isDigit(text[i])) {
      parts[part] = 10 * parts[part] + (text[i] - '0');
    } else {
      return std::nullopt;
    }
  }
  return ofOrder({parts[2], parts[1], parts[0]});
}

/// 20080331: only a year of these centuries makes a date of a number.
std::optional<DateText> readDigits(std::string_view text) {
  constexpr std::size_t length = 8;
  if (text.size() != length || !std::ranges::all_of(text, isDigit)) return std::nullopt;
  const CivilDate date{numberOf(text.substr(0, 4)), numberOf(text.substr(4, 2)),
                       numberOf(text.substr(6))};
  if (date.year < 1900 || date.year > 2099 || !isCivil(date)) return std::nullopt;
  return DateText{DateClue::AnyOrder, date, true};
}

/// 2008-03-31T00:00:00, as databases and programs exchange them; the time does not count.
std::optional<DateText> readTimestamp(std::string_view text) {
  constexpr std::size_t day = 10;
  constexpr std::size_t shortest = 16;  // with hour and minute
  if (text.size() < shortest || text[day] != 'T' || text[4] != '-' || text[7] != '-') {
    return std::nullopt;
  }
  const std::string_view time = text.substr(day + 1);
  if (!isDigit(time.front()) ||
      time.find_first_not_of("0123456789:.+-Z") != std::string_view::npos) {
    return std::nullopt;
  }
  std::string digits(text.substr(0, day));
  std::erase(digits, '-');
  return readDigits(digits);
}

/// 08/03/31.
std::optional<CivilDate> readShortYearFirst(std::string_view text) {
  std::array<std::string_view, 3> parts;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::size_t end = std::min(text.find_first_of("/-. "), text.size());
    parts[i] = text.substr(0, end);
    const bool fits = !parts[i].empty() && end <= 2 && std::ranges::all_of(parts[i], isDigit);
    if (!fits || (end == text.size()) != (i + 1 == parts.size())) return std::nullopt;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  const int year = numberOf(parts[0]);
  const CivilDate date{year + (year < 30 ? 2000 : 1900), numberOf(parts[1]), numberOf(parts[2])};
  return isCivil(date) ? std::optional(date) : std::nullopt;
}

/// With the year first, which nobody reads otherwise: who corrects such a file by hand, or imports
/// it with other options, changes no date.
std::string yearFirst(const CivilDate& date) {
  std::string text = "0000-00-00";
  const auto put = [&](std::size_t end, int number) {
    for (; number > 0; number /= 10) text[--end] = static_cast<char>('0' + number % 10);
  };
  put(4, date.year);
  put(7, date.month);
  put(10, date.day);
  return text;
}

/// Else a year of two digits may be taken for a day.
bool hasLongYear(std::string_view text) {
  constexpr std::ptrdiff_t digits = 4;
  return std::search_n(text.begin(), text.end(), digits, true,
                       [](char c, bool) { return isDigit(c); }) != text.end();
}

}  // namespace

DateText readDateText(std::string_view text) {
  if (text.empty()) return {};
  if (const auto usual = readUsual(text)) return *usual;
  if (const auto digits = readDigits(text)) return *digits;
  if (const auto timestamp = readTimestamp(text)) return *timestamp;
  const std::optional<DateReading> reading = readDate(text, anyYear);
  if (!reading || !reading->hasYear || !reading->hasDay) return {};
  const CivilDate date = civilFromDate(reading->date);
  if (reading->namesMonth || reading->order == DateOrder::YearMonthDay) {
    return {DateClue::AnyOrder, date};
  }
  if (reading->order == DateOrder::MonthDayYear) return {DateClue::MonthFirst, date};
  if (reading->ambiguous) return {DateClue::EitherFirst, date};
  return {date.day == date.month ? DateClue::AnyOrder : DateClue::DayFirst, date};
}

std::optional<std::string> canonicalDate(std::string_view text, const DateText& date,
                                         DateOrder order) {
  if (order == DateOrder::YearMonthDay) {
    if (const auto shortYear = readShortYearFirst(text)) return yearFirst(*shortYear);
    const bool isSure = date.clue == DateClue::AnyOrder && hasLongYear(text);
    return isSure ? std::optional(yearFirst(date.date)) : std::nullopt;
  }
  const bool isDayFirst = order == DateOrder::DayMonthYear;
  if (date.clue == (isDayFirst ? DateClue::MonthFirst : DateClue::DayFirst)) return std::nullopt;
  if (date.clue != DateClue::EitherFirst || isDayFirst) return yearFirst(date.date);
  return yearFirst({date.date.year, date.date.day, date.date.month});
}

}  // namespace velk
