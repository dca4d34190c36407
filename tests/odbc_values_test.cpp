#include <doctest/doctest.h>

#include "platform/errors.h"
#include "platform/odbc/cell_reader.h"
#include "platform/odbc/memory_recordset.h"
#include "tests/support/call_procedure.h"
#include "tests/support/checks.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

constexpr auto wrongType = static_cast<std::int32_t>(ErrorNumber::WrongArgumentType);

TEST_CASE("odbc: what a cell's text holds") {
  struct Row {
    CellKind kind;
    std::string text;
    Value value;
  };
  const Row rows[] = {
      {CellKind::Integer, "-2147483648", -2147483647 - 1},
      {CellKind::Integer, "2147483648", 2147483648.0},
      {CellKind::Integer, "12a", "12a"},
      {CellKind::Integer, "", ""},
      {CellKind::BigInteger, "7", 7.0},
      {CellKind::BigInteger, "9007199254740992", 9007199254740992.0},
      {CellKind::BigInteger, "9007199254740993", "9007199254740993"},
      {CellKind::BigInteger, "9223372036854775807", "9223372036854775807"},
      {CellKind::BigInteger, "-9223372036854775808", -9223372036854775808.0},
      {CellKind::Double, "1.5e3", 1500.0},
      {CellKind::Double, "1.5x", "1.5x"},
      {CellKind::Decimal, ".5000", "0.5000"},
      {CellKind::Decimal, "-.25", "-0.25"},
      {CellKind::Decimal, "12.50", "12.50"},
      {CellKind::Bit, "1", "True"},
      {CellKind::Bit, "0", "False"},
      {CellKind::Date, "2008-04-01", Date{39539}},
      {CellKind::Date, "2008-04-01 18:00:00", Date{39539.75}},
      {CellKind::Date, "01/04/2008", "01/04/2008"},  // not in the engine's own form
      {CellKind::Date, "2008-02-30", "2008-02-30"},
      {CellKind::Text, "007", "007"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    CHECK((interpretCell(row.kind, row.text) == row.value));
  }
}

// What the engine sees of a parameter.
std::string bound(const Value& value, DataType type) {
  static const ScratchDatabase database;
  static const auto connection = database.open();
  const auto reply =
      runCommand(*connection, CommandType::Text,
                 "SELECT typeof(v) || ' ' || ifnull(v, '') FROM (SELECT ? AS v)", {{value, type}});
  return toText(reply->field(0));
}

TEST_CASE("odbc: values are taken as their parameter's type") {
  struct Row {
    Value value;
    DataType type;
    std::string seen;
  };
  const Row rows[] = {
      {"12", DataType::Integer, "integer 12"},
      {2.5, DataType::Integer, "integer 2"},
      {Date{39539}, DataType::Integer, "integer 39539"},
      {" -1.5 ", DataType::Double, "real -1.5"},
      {7, DataType::Double, "real 7.0"},
      {7, DataType::VarChar, "text 7"},
      {Date{39539}, DataType::VarChar, "text 01/04/2008"},
      {Date{39539}, DataType::Date, "text 2008-04-01 00:00:00.000"},
      {Date{39539.999999999}, DataType::Date, "text 2008-04-02 00:00:00.000"},
      {Date{-0.25}, DataType::Date, "text 1899-12-30 06:00:00.000"},
      {"1/4/2008", DataType::Date, "text 2008-04-01 00:00:00.000"},
      {39539, DataType::Date, "text 2008-04-01 00:00:00.000"},
      {Null{}, DataType::Date, "null "},
      {Null{}, DataType::VarChar, "null "},
      {"", DataType::VarChar, "text "},
      {"bad \xFF utf", DataType::VarChar, "text bad \xEF\xBF\xBD utf"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.seen);
    CHECK(bound(row.value, row.type) == row.seen);
  }
}

TEST_CASE("odbc: values that their parameter's type cannot take") {
  struct Row {
    Value value;
    DataType type;
  };
  const Row rows[] = {
      {"12a", DataType::Integer},
      {3e9, DataType::Integer},
      {"", DataType::Double},
      {"1,5", DataType::Double},
      {"32/13/2008", DataType::Date},
      {Date{2958466}, DataType::Date},
      {Date{-657435}, DataType::Date},
      {std::string(2049, 'x'), DataType::VarChar},
      {std::string("a\0b", 3), DataType::VarChar},  // the embedded engine would cut it
  };
  for (const Row& row : rows) {
    CAPTURE(toText(row.value).substr(0, 20));
    CHECK(errorOf([&] { bound(row.value, row.type); }) == wrongType);
  }
}

TEST_CASE("odbc: further results and their errors") {
  const auto first = std::make_shared<MemoryRecordset>();
  const auto second = std::make_shared<MemoryRecordset>(1, std::vector<Value>{Value(1)});
  first->setNext(second);
  second->setNextError(RuntimeError(ErrorNumber::IntegrityViolation));
  const auto reached = first->NextRecordset();
  REQUIRE(reached == second);
  CHECK(first->NextRecordset() == nullptr);
  CHECK((reached->field(0) == Value(1)));
  CHECK(errorOf([&] { reached->NextRecordset(); }) ==
        static_cast<std::int32_t>(ErrorNumber::IntegrityViolation));
  CHECK((reached->field(0) == Value(1)));  // what was read stays
  CHECK(reached->NextRecordset() == nullptr);
}

}  // namespace
}  // namespace velk
