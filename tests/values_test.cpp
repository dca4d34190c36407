#include "platform/values.h"

#include <doctest/doctest.h>

#include <limits>
#include <string>

#include "platform/database.h"
#include "platform/errors.h"
#include "platform/numbers.h"

namespace velk {
namespace {

constexpr int clockYear = 2025;
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

template <typename Function>
std::int32_t errorOf(Function function) {
  try {
    function();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST_CASE("values as text") {
  const struct {
    Value value;
    const char* text;
  } rows[] = {{Null(), ""},
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
    CAPTURE(row.text);
    CHECK(toText(row.value) == row.text);
  }
}

TEST_CASE("amounts read back as they were written") {
  for (int cents = -250'000; cents <= 250'000; ++cents) {
    const double amount = cents / 100.0;
    REQUIRE(leadingNumber(toText(amount)) == amount);
  }
}

TEST_CASE("values as dates") {
  const struct {
    Value value;
    double days;
    std::int32_t error;
  } rows[] = {{std::string("31/03/2008"), 39538, 0},
              {std::string("2008-03-31 12:00:00.000"), 39538.5, 0},
              {std::string("39538"), 0, 13},
              {Null(), 0, 94},
              {std::int32_t{39538}, 39538, 0},
              {Date{1.5}, 1.5, 0},
              {2958465.75, 2958465.75, 0},
              {2958466.0, 0, 6},
              {-657434.75, -657434.75, 0},
              {std::int32_t{-657435}, 0, 6},
              {notANumber, 0, 6}};
  for (const auto& row : rows) {
    CAPTURE(toText(row.value));
    Date date;
    CHECK(errorOf([&] { date = toDate(row.value, clockYear); }) == row.error);
    CHECK(date.days == row.days);
  }
}

TEST_CASE("values as whole numbers") {
  const struct {
    Value value;
    std::int32_t number;
    std::int32_t error;
  } rows[] = {{Null(), 0, 94},
              {std::int32_t{-7}, -7, 0},
              {0.5, 0, 0},
              {1.5, 2, 0},
              {-2.5, -2, 0},
              {2147483647.25, 2147483647, 0},
              {2147483647.5, 0, 6},
              {-2147483648.5, std::numeric_limits<std::int32_t>::min(), 0},
              {notANumber, 0, 6},
              {Date{39538.75}, 39539, 0},
              {std::string(" 12 "), 12, 0},
              {std::string("1.5"), 2, 0},
              {std::string("12 pieces"), 0, 13},
              {std::string(), 0, 13},
              {std::string("99999999999"), 0, 6},
              {std::string("1e400"), 0, 6}};
  for (const auto& row : rows) {
    CAPTURE(toText(row.value));
    std::int32_t number = 0;
    CHECK(errorOf([&] { number = toInt32(row.value); }) == row.error);
    CHECK(number == row.number);
  }
}

TEST_CASE("errors describe themselves") {
  CHECK(RuntimeError(ErrorNumber::ProviderTimeout).description() !=
        standardDescription(ErrorNumber(1000)));
  CHECK(standardDescription(ErrorNumber(1000)) == "Application-defined or object-defined error");
  const RuntimeError error(ErrorNumber::CommandErrors, "Incorrect syntax near 'x'.");
  CHECK(error.number() == -2147217900);
  CHECK(std::string(error.what()) == "Incorrect syntax near 'x'.");
}

TEST_CASE("a connection that was never opened executes nothing") {
  ClosedConnection connection;
  CHECK(errorOf([&] { connection.Execute("SELECT 1"); }) == 3709);
  CHECK(errorOf([&] { connection.newCommand()->Execute(defaultOptions); }) == 3709);
}

}  // namespace
}  // namespace velk
