#include "base/values.h"

#include <limits>

#include "base/numbers.h"
#include "platform/database.h"
#include "tests/support/checks.h"

namespace velk {
namespace {

using namespace std::string_literals;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST_CASE("values as text") {
  const std::pair<Value, const char*> rows[] = {
      {Null(), ""},
      {std::string(" a "), " a "},
      {std::numeric_limits<std::int32_t>::min(), "-2147483648"},
      {-0.0, "0"},
      {-1234.5, "-1234.5"},
      {0.1 + 0.2, "0.3"},
      {2.0 / 3, "0.666666666666667"},
      {999999999999999.0, "999999999999999"},
      {1e15, "1E+15"},
      {-1.5e300, "-1.5E+300"},
      {0.0001, "0.0001"},
      {0.00001, "1E-05"},
      {Date{39538}, "31/03/2008"},
      {Date{39538.4375}, "31/03/2008 10:30:00"},
      {Date{39538.999999}, "01/04/2008"},
      {Date{-1.25}, "29/12/1899 06:00:00"}};
  for (const auto& row : rows) {
    CAPTURE(row.second);
    CHECK(toText(row.first) == row.second);
  }
}

TEST_CASE("amounts read back as they were written") {
  for (int cents = -250'000; cents <= 250'000; ++cents) {
    const double amount = cents / 100.0;
    REQUIRE(leadingNumber(toText(amount)) == amount);
  }
}

/// A value, what it converts to, and the error that is raised instead.
struct Conversion {
  Value value;
  double expected;
  std::int32_t error = 0;
};

template <class Rows, class Convert>
void checkConversions(const Rows& rows, Convert convert) {
  for (const Conversion& row : rows) {
    CAPTURE(toText(row.value));
    double result = 0;
    CHECK(errorOf([&] { result = convert(row.value); }) == row.error);
    CHECK(result == row.expected);
  }
}

TEST_CASE("values as dates and as whole numbers") {
  const Conversion dates[] = {{"31/03/2008"s, 39538},   {"2008-03-31 12:00:00.000"s, 39538.5},
                              {"39538"s, 0, 13},        {Null(), 0, 94},
                              {39538, 39538},           {Date{1.5}, 1.5},
                              {2958465.75, 2958465.75}, {2958466.0, 0, 6},
                              {-657434.75, -657434.75}, {-657435, 0, 6},
                              {notANumber, 0, 6}};
  checkConversions(dates, [](const Value& value) { return toDate(value, 2025).days; });
  const Conversion numbers[] = {{-7, -7},
                                {0.5, 0},
                                {1.5, 2},
                                {-2.5, -2},
                                {2147483647.25, 2147483647},
                                {2147483647.5, 0, 6},
                                {-2147483648.5, -2147483648.0},
                                {notANumber, 0, 6},
                                {Null(), 0, 94},
                                {Date{39538.75}, 39539},
                                {" 12 "s, 12},
                                {"1.5"s, 2},
                                {"12 pieces"s, 0, 13},
                                {""s, 0, 13},
                                {"99999999999"s, 0, 6},
                                {"1e400"s, 0, 6}};
  checkConversions(numbers, [](const Value& value) { return double(toInt32(value)); });
}

}  // namespace
}  // namespace velk
