#include "base/numbers.h"
#include "tests/support/checks.h"

#include <cmath>
#include <cstdlib>
#include <optional>
#include <random>

namespace velk {
namespace {

using namespace std::string_literals;

/// The number, or nothing where error 6 is raised.
std::optional<double> numberOrOverflow(std::string_view text) {
  try {
    return leadingNumber(text);
  } catch (const RuntimeError& error) {
    CHECK(error.is(ErrorNumber::Overflow));
    return std::nullopt;
  }
}

TEST_CASE("leading numbers") {
  const std::pair<const char*, double> whole[] = {{" 12.5 ", 12.5},
                                                  {"-.5", -.5},
                                                  {"5.", 5},
                                                  {"-1.5D3", -1500},
                                                  {"4.9e-324", 4.9e-324},
                                                  {"0.001e-400", 0},
                                                  {"1e-99999999999999999999", 0},
                                                  {"0e99999999999999999999", 0}};
  for (const auto& row : whole) {
    CAPTURE(row.first);
    CHECK(leadingNumber(row.first) == row.second);
    CHECK(parseNumber(row.first) == row.second);
  }
  const std::pair<const char*, double> others[] = {
      {"", 0},     {"12.5abc", 12.5}, {".", 0},       {"1 2", 1},  {"1,234.50", 1},
      {"1e", 1},   {"e5", 0},         {"1d-2x", .01}, {"0x10", 0}, {"inf", 0},
      {"-nan", 0}, {"\t5", 0},        {"\u00A05", 0}};
  for (const auto& row : others) {
    CAPTURE(row.first);
    CHECK(leadingNumber(row.first) == row.second);
    CHECK_FALSE(parseNumber(row.first).has_value());
  }
}

TEST_CASE("numbers beyond a double are error 6") {
  for (const std::string& text :
       {"1e309"s, "-1D309"s, "1e99999999999999999999"s, "0.00001e400"s, "17976931348623159e292"s,
        "1e309abc"s, std::string(10'000, '9')}) {
    CAPTURE(text);
    CHECK_FALSE(numberOrOverflow(text).has_value());
  }
}

TEST_CASE("ten thousand digits") {
  const std::string zeros(10'000, '0');
  CHECK(leadingNumber(zeros + "7") == 7);
  CHECK(leadingNumber("." + zeros + "7") == 0);
  CHECK(leadingNumber("1" + zeros + "e-10000") == 1);
  CHECK(leadingNumber("." + zeros + "1e10001") == 1);
  CHECK(leadingNumber("1." + zeros + "1") == 1);
}

TEST_CASE("agrees with the C library wherever the grammars are the same") {
  std::mt19937 random(20080331);
  const std::string_view alphabet = "0123456789019.eE+- ,";
  for (int i = 0; i < 50'000; ++i) {
    std::string text;
    for (auto length = random() % 14; length > 0; --length) {
      text += alphabet[random() % alphabet.size()];
    }
    const double expected = std::strtod(text.c_str(), nullptr);
    const std::optional<double> number = numberOrOverflow(text);
    CAPTURE(text);
    REQUIRE(number.has_value() == std::isfinite(expected));
    if (number) REQUIRE(*number == expected);
  }
}

}  // namespace
}  // namespace velk
