#include <doctest/doctest.h>

#include <algorithm>

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

/// The embedded database's statement for a text of the system's; "(none)" if it is not known.
std::string translated(std::string_view statement) {
  const auto shape = shapeOf(statement);
  const auto* known = shape ? findStatement(sqliteDialect, shape->text) : nullptr;
  return known == nullptr ? "(none)" : std::string(known->sql);
}

const std::string customersQuery = "select count(*) from Customer where CustomerID=N'";
const std::string vendorsQuery = "select count(*) from Vendors where VendorID='";

TEST_CASE("dialects: statements that the embedded database has its own for") {
  const std::pair<std::string, std::string> rows[] = {
      {customersQuery + "C1'", "select count(*) from Customer where CustomerID=?"},
      {customersQuery + "O''B -- ;'", "select count(*) from Customer where CustomerID=?"},
      {vendorsQuery + "'", "select count(*) from Vendors where VendorID=?"},
      {"SELECT TOP 1 OpeningDate FROM Setup", "SELECT OpeningDate FROM Setup LIMIT 1"},
      {"SELECT GETDATE()", "SELECT datetime('now','localtime')"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK(translated(row.first) == row.second);
  }
  // Without its row this one would work all the same, but be prepared for each salesman.
  CHECK(translated("Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue = "
                   "'Retail' and DSTypeCtlPos = 1 and OCGtype = (Select flag from "
                   "tbl_velk_Configabstract where ScreenCode = 'OCGDS' and ScreenName "
                   "='OperationalCategoryGroup') ") != "(none)");
}

TEST_CASE("dialects: texts that must not be taken for a known statement") {
  for (const std::string& statement :
       {customersQuery + "x' or '1'='1'", customersQuery + "x'' or ''1''=''1",
        customersQuery + "C1' --'", customersQuery + "x'; drop table Customer--'",
        customersQuery + "x' or CustomerID=N'C1'", customersQuery + "x'/*'*/",
        vendorsQuery + "O'Brien'", vendorsQuery + "x' union select '1'",
        std::string("select count(*) from Vendors where VendorID=?"),
        std::string("select count(*) from Vendors where VendorID=? or '1'='1'"),
        " " + vendorsQuery + "V1'", vendorsQuery + "V1' ",
        "SELECT" + vendorsQuery.substr(6) + "V1'"}) {
    CAPTURE(statement);
    CHECK(translated(statement) == "(none)");
  }
}

TEST_CASE("dialects: each known statement has a mark for each literal") {
  for (const char* engine : {"SQLite", "PostgreSQL", "MariaDB"}) {
    CHECK(dialectOf(engine).statements.size() == sqliteDialect.statements.size());
    for (const KnownStatement& statement : dialectOf(engine).statements) {
      CHECK(findStatement(sqliteDialect, statement.shape) != nullptr);
      CAPTURE(statement.shape);
      CHECK(std::ranges::count(statement.shape, '?') == std::ranges::count(statement.sql, '?'));
    }
  }
}

TEST_CASE("dialects: engines by the names that their drivers give them") {
  CHECK(&dialectOf("sqlite") == &sqliteDialect);
  for (const char* name : {"", "Microsoft SQL Server", "SQLite2"}) {
    CHECK(dialectOf(name).statements.empty());
    CHECK_FALSE(dialectOf(name).hasProcedureTable);
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
      {13, "database or disk is full (13)", "HY000"},
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

}  // namespace
}  // namespace velk
