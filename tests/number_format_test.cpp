#include "platform/spreadsheet/number_format.h"
#include "tests/support/checks.h"

#include <cmath>

namespace velk {
namespace {

TEST_CASE("numbers as their formats show them") {
  const struct {
    std::string code;
    double value;
    std::string text;
  } rows[] = {// General: every digit that counts, exponents only far out
              {"general", 12345678901234500000.0, "12345678901234500000"},
              {"General", 1.5e21, "1.5E+21"},
              {"General", 0.1 + 0.2, "0.3"},
              {"General", 0.00001, "0.00001"},
              {"General", -2e-30, "-2E-30"},
              {"General", 0, "0"},
              {"", -12.5, "-12.5"},
              {"@", 2412345, "2412345"},
              {"0.00E+00", 9876543210, "9876543210"},
              {"# ?/?", 0.5, "0.5"},
              {"[>1000]0.0;0", 5.25, "5.25"},
              {"[<0]0.00;0", -5, "-5"},
              {"[>1000]0.0;0", -5.25, "-5.25"},
              {"[<5]0;[Red]0.00", 1000.5, "1000.5"},
              {";;;", 7, "7"},
              // places, rounding of what the decimal digits say, groups, scaling
              {"0.00", 2.675, "2.68"},
              {"0.00", 99.999, "100.00"},
              {"0", -0.4, "0"},
              {"0", 0.5, "1"},
              {"#.##", 5, "5."},
              {"0.0#", 1.25, "1.25"},
              {"#,##0.00", 1234567.891, "1,234,567.89"},
              {"#,##0", -1000, "-1,000"},
              {"0,", 1234567, "1235"},
              {"0.0,,", 1250000, "1.3"},
              {"0.0,0", 1.25, "1.25"},
              {"0%", 0.0825, "8%"},
              {"0.00%", 0.0825, "8.25%"},
              // texts within
              {"000-0000", 5551234, "555-1234"},
              {"(000) 000 0000", 24123456789, "(2412) 345 6789"},
              {"\"Rs. \"#,##0", 1500, "Rs. 1,500"},
              {"[$\xE2\x82\xB9-4009] 0", 5, "\xE2\x82\xB9 5"},
              {"\\\xE2\x82\xAC"
               "0",
               5,
               "\xE2\x82\xAC"
               "5"},
              {"#,##0.00_);[Red](#,##0.00)", -1234.5, "(1,234.50)"},
              {"#,##0.00_);[Red](#,##0.00)", 1234.5, "1,234.50 "},
              {"_(* #,##0_);_(* (#,##0);_(* \"-\"??_)", 0, " -   "},
              // dates and times
              {"dd/mm/yyyy", 39538, "31/03/2008"},
              {"d-mmm-yy", 39538, "31-Mar-08"},
              {"dddd, d mmmm yyyy", 39538, "Monday, 31 March 2008"},
              {"yyyy-mm-dd hh:mm:ss", 39538.5451388889, "2008-03-31 13:05:00"},
              {"h:mm AM/PM", 0.5, "12:00 PM"},
              {"h:mm A/P", 0.0, "12:00 A"},
              {"mm:ss.0", 0.00390625, "05:38"},
              {"[h]:mm", 1.5, "36:00"},
              {"[$-409]d.m.yy;@", 39538, "31.3.08"},
              {"dd/mm/yyyy", 59, "28/02/1900"},
              {"dd/mm/yyyy", 60.99999999, "01/03/1900"},
              {"dd/mm/yyyy", -1, "-1"},
              {"dd/mm/yyyy", 9876543210, "9876543210"}};
  for (const auto& row : rows) {
    CAPTURE(row.code);
    CAPTURE(row.value);
    CHECK(NumberFormat(row.code).text(row.value, false) == row.text);
  }
  CHECK(NumberFormat("dd/mm/yyyy").text(38076, true) == "31/03/2008");
  CHECK(NumberFormat(std::string(300, '0')).text(5, false) == "5");
  CHECK(NumberFormat("0").text(HUGE_VAL, false) == "#NUM!");
}

TEST_CASE("built-in formats") {
  const std::pair<std::uint16_t, const char*> rows[] = {
      {0, "39538.25"},         {2, "39538.25"},    {14, "31/03/2008"},
      {22, "31/03/2008 6:00"}, {40, "39,538.25 "}, {46, "948918:00:00"},
      {48, "39538.25"},        {49, "39538.25"},   {163, "39538.25"}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK(NumberFormat(builtInFormat(row.first)).text(39538.25, false) == row.second);
  }
}

}  // namespace
}  // namespace velk
