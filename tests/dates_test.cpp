#include "base/date_reader.h"

#include <doctest/doctest.h>

#include <limits>
#include <string>

namespace velk {
namespace {

constexpr int clockYear = 2025;

TEST_CASE("every day of the years 100 to 9999 keeps its number") {
  CivilDate expected{100, 1, 1};
  for (int number = -657434; number <= 2958465; ++number) {
    const bool same = civilFromDate({double(number)}) == expected &&
                      dateFromCivil(expected).days == double(number);
    if (!same) FAIL(number);  // a check of each would take seconds
    ++expected.day;
    if (!isCivil(expected)) expected = {expected.year, expected.month + 1, 1};
    if (!isCivil(expected)) expected = {expected.year + 1, 1, 1};
  }
  CHECK((expected == CivilDate{10000, 1, 1}));
  CHECK(dateFromCivil({1899, 12, 30}).days == 0);
  const CivilDate none[] = {{99, 12, 31},   {10000, 1, 1},  {2008, 0, 1},         {2008, 13, 1},
                            {2008, 1, 0},   {2008, 4, 31},  {2007, 2, 29},        {1900, 2, 29},
                            {2008, 257, 1}, {2008, 1, 257}, {65536 + 2008, 1, 1}, {2008, -1, -1}};
  for (const CivilDate& row : none) {
    CAPTURE(&row - none);
    CHECK_FALSE(isCivil(row));
  }
}

/// Calls `check` with each of the texts that "|" separates.
template <class Check>
void forEach(std::string_view texts, Check check) {
  for (std::size_t at = 0; at <= texts.size();) {
    const std::string_view text = texts.substr(at, texts.find('|', at) - at);
    check(text);
    at += text.size() + 1;
  }
}

/// Each row is a text, "=", and the ISO form of the date that it reads as; no time is midnight.
void checkDates(DateOrder order, bool ambiguous, std::string_view rows) {
  forEach(rows, [&](std::string_view row) {
    CAPTURE(row);
    std::string expected(row.substr(row.find('=') + 1));
    if (expected.size() == 10) expected += " 00:00:00";
    const auto reading = readDate(row.substr(0, row.find('=')), clockYear);
    REQUIRE(reading.has_value());
    CHECK(formatIso(reading->date) == expected);
    CHECK(reading->order == order);
    CHECK(reading->ambiguous == ambiguous);
  });
}

TEST_CASE("texts that are dates") {
  checkDates(DateOrder::DayMonthYear, true,
             "03/04/2008=2008-04-03|1.2.2008=2008-02-01|1,2,08=2008-02-01");
  checkDates(DateOrder::MonthDayYear, false, "12/31/2008=2008-12-31|12/31=2025-12-31");
  checkDates(DateOrder::YearMonthDay, false,
             "2008-03-04=2008-03-04|2008-03=2008-03-01|2008 May 5=2008-05-05|"
             "2008-03-31 10:30:15.600=2008-03-31 10:30:16");
  checkDates(DateOrder::DayMonthYear, false,
             "31/03/2008=2008-03-31|4/4/2008=2008-04-04|  13 / 2 -2008  =2008-02-13|"
             "13/1/30=1930-01-13|13/1/29=2029-01-13|13/1/0=2000-01-13|13/1/100=0100-01-13|"
             "31/12=2025-12-31|3/2008=2008-03-01|Mar 2008=2008-03-01|March 31=2025-03-31|"
             "31-MAR-08=2008-03-31|Mar 5, 2008=2008-03-05|5 2008 September=2008-09-05|"
             "Monday, 31 March 2008=2008-03-31|31 march 2008 sun=2008-03-31");
  checkDates(DateOrder::DayMonthYear, false,
             "31/03/2008 23:59:59=2008-03-31 23:59:59|31/03/2008, 1:5=2008-03-31 01:05:00|"
             "31/03/2008 10:30:15 PM=2008-03-31 22:30:15|31/03/2008 12:30 am=2008-03-31 00:30:00|"
             "31/03/2008 12:30 pm=2008-03-31 12:30:00|31/03/2008 13:55 pm=2008-03-31 13:55:00|"
             "31/03/2008 7 pm=2008-03-31 19:00:00|10:30 31/03/2008=2008-03-31 10:30:00|"
             "10:30 am, Mon 31 Mar=2025-03-31 10:30:00|31 3 10:30=2025-03-31 10:30:00|"
             "29/12/1899 18:00=1899-12-29 18:00:00|31/12/9999 23:59:59.9=9999-12-31 23:59:59");
}

TEST_CASE("texts that are no dates") {
  using namespace std::string_view_literals;
  const std::string_view rows =
      "| |abc|31|2008|31/02/08|31/02|1/32|0/5/14|29Feb01|Mar 32|20080331|39538|32/13/2008|"
      "31/02/2008|29/02/2007|0/0/2008|31 Apr 2008|13/2008|1/1/0008|031/03/2008|2008/31/03|"
      "3/2008/31|1/2/10000|31.12|31,12|1,234|1,23,456|.5/6|Mar 5,345|March|Mar Apr 2008|"
      "31 Mart 2008|31 Ma 2008|31st March 2008|Mon Tue 31/3/2008|31 M\xC3\xA4rz 2008|"
      "Mar 1 2 2008|10:30|10 pm|31/03/2008 24:00|31/03/2008 25:00|31/03/2008 10:60|10:677370864|"
      "31/03/2008 10:30:60|31/03/2008 10:|31/03/2008 :30|31/03/2008 10:30 xm|31/03/2008 10:30pmx|"
      "31/03/2008 10:30 10:30|31/03/200810:30|31/03/2008/10:30|10:30/31/03/2008|"
      "10:30/Mon 31/03/2008|31/03 10:30 2008|31/03/2008 100:30|31/03/2008 10:30:15.|"
      "31/03/2008 10:30:15.1234567890|31/03/2008T10:30|Mar 10:30|10:30 31/03/2008 10:30|"
      "-1/2/2008|1//2/2008|/1/2/2008|1/2/2008/|1/2/2008,|1/-2/2008|1/2/3/4|1_2_2008|'1/2/2008|"
      "1/2/2008 x|1/2/2008\0|1/2\0/2008|\t1/2/2008|1/2/2008\r|1/2/2008\x1A|1\xC2\xA0/2/2008|"
      "\xEF\xBC\x91/2/2008|1/2/2008\xFF"sv;
  forEach(rows, [](std::string_view row) {
    CAPTURE(row);
    CHECK_FALSE(readDate(row, clockYear).has_value());
  });
  for (const std::string_view piece : {"1", "1/", "Mar ", "a", "/", "10:", "\xFF", "Mon "}) {
    std::string text;
    while (text.size() < 1'000'000) text += piece;
    CAPTURE(piece);
    CHECK_FALSE(readDate(text, clockYear).has_value());
  }
  CHECK(readDate("31/3" + std::string(1'000'000, ' ') + "/2008", clockYear).has_value());
}

TEST_CASE("a time keeps to the day it is written") {
  const struct {
    double days;
    const char* iso;
    const char* day;
  } rows[] = {{39538.4375, "2008-03-31 10:30:00", "31/03/2008"},
              {39538.999999, "2008-04-01 00:00:00", "31/03/2008"},
              {39538 + 1e-9, "2008-03-31 00:00:00", "31/03/2008"},
              {-1.25, "1899-12-29 06:00:00", "29/12/1899"},
              {-657434, "0100-01-01 00:00:00", "01/01/0100"},
              // no days at all, as a faulty driver may give
              {1e300, "9999-12-31 00:00:00", "31/12/9999"},
              {-1e300, "0100-01-01 00:00:00", "01/01/0100"},
              {std::numeric_limits<double>::infinity(), "9999-12-31 00:00:00", "31/12/9999"},
              {std::numeric_limits<double>::quiet_NaN(), "0100-01-01 00:00:00", "01/01/0100"}};
  for (const auto& row : rows) {
    CAPTURE(row.days);
    CHECK(formatIso({row.days}) == row.iso);
    CHECK(formatDayFirst({row.days}) == row.day);
  }
}

}  // namespace
}  // namespace velk
