#include "platform/odbc/diagnostics.h"

#include <doctest/doctest.h>

namespace velk {
namespace {

TEST_CASE("odbc: states and their error numbers") {
  const struct {
    std::string state;
    std::int32_t native, number;
  } rows[] = {
      {"HYT00", 0, -2147217871},   {"HYT01", 0, -2147217871},     {"23000", 2627, -2147217873},
      {"23505", 0, -2147217873},   {"22001", 8152, -2147217833},  {"22003", 0, -2147467259},
      {"42S02", 208, -2147217865}, {"28000", 18456, -2147217843}, {"42000", 229, -2147217911},
      {"42501", 0, -2147217911},   {"42000", 102, -2147217900},   {"42S22", 207, -2147217900},
      {"08S01", 0, -2147467259},   {"40001", 1205, -2147467259},  {"HY000", 0, -2147467259},
      {"HY000", 229, -2147467259}, {"IM002", 0, -2147467259},     {"", 0, -2147467259},
  };
  for (const auto& row : rows) {
    CAPTURE(row.state);
    CAPTURE(row.native);
    // The first record counts.
    CHECK(toRuntimeError({{row.state, row.native, "a"}, {"23000", 0, "b"}}).number() == row.number);
    CHECK(tellsConnectionLost({{"HYT00", 8, "08"}, {row.state, 0, ""}}) == (row.state == "08S01"));
  }
  CHECK(toRuntimeError({}).number() == -2147467259);
}

TEST_CASE("odbc: descriptions lose the names of the layers") {
  struct Row {
    std::string message;
    std::string description;
  };
  const Row rows[] = {
      {"[Vendor][Driver][Server]Invalid object name 'x'.", "Invalid object name 'x'."},
      {"[SQLite]no such column: [a]", "no such column: [a]"},
      {"[Vendor] spaced ", "spaced"},
      {"[never closed", "[never closed"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.message);
    CHECK(toRuntimeError({{"42000", 0, row.message}}).description() == row.description);
  }
}

}  // namespace
}  // namespace velk
