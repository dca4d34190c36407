#include <doctest/doctest.h>

#include "platform/odbc/diagnostics.h"
#include "platform/odbc/engines.h"
#include "platform/odbc/sqlite_dialect.h"
#include "platform/odbc/statement_shape.h"
#include "tests/support/checks.h"

namespace velk {
namespace {

TEST_CASE("dialects: statements are split at their literals") {
  const struct {
    std::string statement, text;
    Texts literals;
  } rows[] = {
      {"select 1 from C where I=N'C1'", "select 1 from C where I=N?", {"C1"}},
      {"select 1 from C where I='a''b'''", "select 1 from C where I=?", {"a'b'"}},
      {"I='' or J=''''", "I=? or J=?", {"", "'"}},
      {"I='x' or '1'='1'", "I=? or ?=?", {"x", "1", "1"}},
      {"'a?b', 'é'N'--'", "?, ?N?", {"a?b", "é", "--"}},
      {"select I from C", "select I from C", {}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.statement);
    const auto shape = shapeOf(row.statement);
    REQUIRE(shape);
    CHECK(shape->text == row.text);
    CHECK(shape->literals == row.literals);
  }
  for (const std::string statement : {"'", "I='a''", "I='O'Brien'", "I=?", "I='a' and J=?"}) {
    CAPTURE(statement);
    CHECK_FALSE(shapeOf(statement));
  }
}

TEST_CASE("dialects: native codes as states") {
  const struct {
    std::int32_t native;
    std::string message, state;
  } rows[] = {
      {5, "database is locked (5)", "HYT00"},
      {6, "database table is locked (6)", "HYT00"},
      {517, "database is locked (517)", "HYT00"},  // an extended code
      {19, "UNIQUE constraint failed: t.a (19)", "23000"},
      {1, "no such table: t (1)", "42S02"},
      {1, "near \"frm\": syntax error (1)", "42000"},
      {8, "attempt to write a readonly database (8)", "42501"},
      {18, "string or blob too big (18)", "22001"},
      {26, "file is not a database (26)", "08001"},
      {13, "database or disk is full (13)", "53100"},
      {10, "disk I/O error (10)", "HY000"},
      {-1, "only one SQL statement allowed", "42000"},
      {-1, "unbound parameters in query", "HY000"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.message);
    CHECK(normalized(sqliteDialect, {"HY000", row.native, row.message}).state == row.state);
    CHECK(normalized(sqliteDialect, {"IM002", row.native, row.message}).state == "IM002");
    CHECK(normalized(dialectOf({}), {"HY000", row.native, row.message}).state == "HY000");
  }
}

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

}  // namespace
}  // namespace velk
