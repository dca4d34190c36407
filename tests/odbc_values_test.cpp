#include <doctest/doctest.h>

#include "platform/memory_recordset.h"
#include "platform/odbc/cell_text.h"
#include "tests/support/database_calls.h"

namespace velk {
namespace {

TEST_CASE("odbc: what a cell's text holds") {
  const struct {
    SQLSMALLINT type;
    std::string text;
    Value value;
  } rows[] = {
      {SQL_INTEGER, "-2147483648", -2147483647 - 1},
      {SQL_INTEGER, "2147483648", 2147483648.0},
      {SQL_INTEGER, "12a", "12a"},
      {SQL_INTEGER, "", ""},
      {SQL_BIGINT, "7", 7.0},
      {SQL_BIGINT, "9007199254740993", "9007199254740993"},
      {SQL_BIGINT, "9223372036854775807", "9223372036854775807"},
      {SQL_BIGINT, "-9223372036854775808", -9223372036854775808.0},
      {SQL_DOUBLE, "1.5e3", 1500.0},
      {SQL_DOUBLE, "1.5x", "1.5x"},
      {SQL_DECIMAL, "-.250", "-0.250"},
      {SQL_DECIMAL, "12.50", "12.50"},
      {SQL_BIT, "1", "True"},
      {SQL_BIT, "0", "False"},
      {SQL_TYPE_TIMESTAMP, "2008-04-01 18:00:00", Date{39539.75}},
      {SQL_TYPE_TIMESTAMP, "01/04/2008", "01/04/2008"},  // not in the engine's own form
      {SQL_TYPE_TIMESTAMP, "2008-02-30", "2008-02-30"},
      {SQL_VARCHAR, "007", "007"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.text);
    CHECK((cellReadingOf(row.type)(row.text) == row.value));
  }
}

TEST_CASE("odbc: values are taken as their parameter's type, or refused") {
  struct Row {
    Parameter given;
    std::string seen;  // by the engine
  };
  const Row rows[] = {
      {{"12", DataType::Integer}, "integer 12"},
      {{2.5, DataType::Integer}, "integer 2"},
      {{Date{39539}, DataType::Integer}, "integer 39539"},
      {{"12a", DataType::Integer}, "refused"},
      {{3e9, DataType::Integer}, "refused"},
      {{" -1.5 ", DataType::Double}, "real -1.5"},
      {{7, DataType::Double}, "real 7.0"},
      {{"", DataType::Double}, "refused"},
      {{"1,5", DataType::Double}, "refused"},
      {{Date{39539}, DataType::VarChar}, "text 01/04/2008"},
      {{"", DataType::VarChar}, "text "},
      {{"bad \xFF utf", DataType::VarChar}, "text bad \xEF\xBF\xBD utf"},
      {{std::string("a\0b", 3), DataType::VarChar}, "refused"},  // the engine would cut it
      {{Date{39539.999999999}, DataType::Date}, "text 2008-04-02 00:00:00.000"},
      {{Date{-0.25}, DataType::Date}, "text 1899-12-30 06:00:00.000"},
      {{"1/4/2008", DataType::Date}, "text 2008-04-01 00:00:00.000"},
      {{39539, DataType::Date}, "text 2008-04-01 00:00:00.000"},
      {{"32/13/2008", DataType::Date}, "refused"},
      {{Date{2958466}, DataType::Date}, "refused"},
      {{Date{-657435}, DataType::Date}, "refused"},
  };
  const ScratchDatabase database;
  const auto connection = database.open();
  const std::string query = "SELECT typeof(v) || ' ' || v FROM (SELECT ? AS v)";
  for (const auto& row : rows) {
    const std::string given = toText(row.given.value);
    CAPTURE(given);
    std::string seen = "refused";
    const auto error =
        errorOf([&] { seen = firstField(runCommand(*connection, query, {row.given})); });
    CHECK(seen == row.seen);
    CHECK(error == (row.seen == "refused" ? code(Errors::WrongArgumentType) : 0));
  }
}

}  // namespace
}  // namespace velk
