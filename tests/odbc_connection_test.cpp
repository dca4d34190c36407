// How any database behaves through the connection: the embedded one, the servers of the tests' own,
// and what OPNIMP_TEST_SQLSERVER names by a connection string.
#include <doctest/doctest.h>

#include "base/errors.h"
#include "tests/support/database_calls.h"
#include "tests/support/engines.h"

namespace velk {
namespace {

// A connection to each engine in its turn, with an empty table for the suite.
struct EveryEngine {
  ScratchDatabase database;
  std::shared_ptr<OwnConnection> connection;
  const TestEngine* engine = nullptr;

  EveryEngine() {
    for (const TestEngine& each : testEngines()) {
      SUBCASE(each.name) {
        engine = &each;
      }
    }
    REQUIRE(engine != nullptr);
    connection = engine->isEmbedded() ? database.open() : openOdbc(engine->connectionString);
    connection->Execute("DROP TABLE IF EXISTS odbc_suite");
    connection->Execute(
        std::string("CREATE TABLE odbc_suite (Code varchar(20) NOT NULL PRIMARY KEY, Name ") +
        engine->textType + "(2048) NULL, Pieces int NULL, Amount double precision NULL, Made " +
        engine->dateType + " NULL)");
  }
  void run(std::string_view statement, const Parameters& parameters) {
    runCommand(*connection, statement, parameters);
  }
  void insertCode(const char* key) { run("INSERT INTO odbc_suite (Code) VALUES (?)", {key}); }
  std::string ask(std::string_view query) { return velk::ask(*connection, query); }
  std::string rows() { return ask("SELECT count(*) FROM odbc_suite"); }
};

TEST_CASE_FIXTURE(EveryEngine, "odbc: moving through a record set") {
  CHECK(connection->diagnostics().empty());
  auto reply = connection->Execute("SELECT Code FROM odbc_suite");
  CHECK(reply->State() == stateOpen);
  CHECK(reply->isBOF());
  CHECK(reply->isEOF());
  CHECK(errorOf([&] { reply->field(0); }) == code(Errors::NoCurrentRecord));
  CHECK(errorOf([&] { reply->MoveNext(); }) == code(Errors::NoCurrentRecord));

  insertCode("B");
  insertCode("A");
  reply = connection->Execute("SELECT Code, Name FROM odbc_suite ORDER BY Code");
  CHECK_FALSE(reply->isBOF());
  CHECK((reply->field(0) == Value("A")));
  CHECK((reply->field(0) == Value("A")));  // a field may be read again
  CHECK(isNull(reply->field(1)));
  CHECK(errorOf([&] { reply->field(2); }) == code(Errors::ItemNotFound));
  reply->MoveNext();
  CHECK((reply->field(0) == Value("B")));
  reply->MoveNext();
  CHECK(reply->isEOF());
  CHECK_FALSE(reply->isBOF());
  CHECK(reply->NextRecordset() == nullptr);
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: closed record sets") {
  const auto changed = connection->Execute("DELETE FROM odbc_suite");
  const auto read = connection->Execute("SELECT Code FROM odbc_suite");
  read->Close();
  for (const auto& closed : {changed, read}) {
    CHECK(closed->State() == stateClosed);
    CHECK(errorOf([&] { closed->isEOF(); }) == code(Errors::ObjectClosed));
    CHECK(errorOf([&] { closed->field(0); }) == code(Errors::ObjectClosed));
    CHECK(errorOf([&] { closed->Close(); }) == code(Errors::ObjectClosed));
    CHECK(closed->NextRecordset() == nullptr);
  }
}

std::string repeated(const char* unit, int times) {
  std::string whole;
  for (int i = 0; i < times; ++i) whole += unit;
  return whole;
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: values there and back") {
  const Parameters rows[] = {
      {"1", "plain", 0, 0.0, Date{39538}},
      {"2", "", -2147483647 - 1, -0.5, Date{39538.75}},
      {"3", "O'Brien & Söhne", 2147483647, 1e15, Date{2}},
      {"4", "\xF0\x9F\x98\x80 beyond the first plane", 7, 123456.78, Date{-1.25}},
      {"5", repeated("x", 2048), 1, 1e-9, Date{2958465}},
      {"6", repeated("é", 2048), 1, 1.0, Date{0}},
      {"7", " ends with a blank ", 1, 0.25, Date{39538}},
      {"8",
       Null{},
       {Null{}, DataType::Integer},
       {Null{}, DataType::Double},
       {Null{}, DataType::Date}},
  };
  for (const Parameters& row : rows) {
    const std::string key = toText(row[0].value);
    CAPTURE(key);
    run("INSERT INTO odbc_suite VALUES (?, ?, ?, ?, ?)", row);
    const auto back = connection->Execute("SELECT * FROM odbc_suite WHERE Code = '" + key + "'");
    for (std::size_t i = 0; i < row.size(); ++i) {
      CAPTURE(i);
      CHECK((back->field(i) == row[i].value));
    }
  }
}

// One that a driver rounds to 15 digits would not be their sum.
TEST_CASE_FIXTURE(EveryEngine, "odbc: a number keeps its last bit") {
  for (const auto& [key, amount] : {std::pair("a", 0.1), {"b", 0.2}, {"sum", 0.1 + 0.2}}) {
    run("INSERT INTO odbc_suite (Code, Amount) VALUES (?, ?)", {key, amount});
  }
  CHECK(ask("SELECT count(*) FROM odbc_suite a, odbc_suite b, odbc_suite s WHERE a.Code = 'a' AND "
            "b.Code = 'b' AND s.Code = 'sum' AND a.Amount + b.Amount = s.Amount") == "1");
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: a text longer than a parameter is refused, never cut") {
  for (const char* unit : {"x", "é"}) {
    CAPTURE(unit);
    const Parameters tooLong{"K", repeated(unit, 2049)};
    CHECK(errorOf([&] { run("INSERT INTO odbc_suite (Code, Name) VALUES (?, ?)", tooLong); }) ==
          code(Errors::WrongArgumentType));
  }
  CHECK(rows() == "0");
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: literals in a query mean what they say") {
  for (const char* key : {"C1", "O'B", "a?b", "--", "[x]", "ü€", "C2"}) insertCode(key);
  const std::pair<std::string, std::string> rows[] = {{"C1", "1"},
                                                      {"C3", "0"},
                                                      {"C2", "1"},
                                                      {"O''B", "1"},
                                                      {"", "0"},
                                                      {"a?b", "1"},
                                                      {"--", "1"},
                                                      {"[x]", "1"},
                                                      {"ü€", "1"},
                                                      {"x' or '1'='1", "7"},
                                                      {"C1' or Code='C2", "2"},
                                                      {"C1' or Code='ü€", "2"},
                                                      {"C1' -- ", "1"},
                                                      {"O'B", "refused"},
                                                      {"C1'C2'", "refused"}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    std::string count = "refused";
    const auto error = errorOf(
        [&] { count = ask("select count(*) from odbc_suite where Code='" + row.first + "'"); });
    CHECK(count == row.second);
    CHECK(error == (row.second == "refused" ? code(Errors::CommandErrors) : 0));
  }
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: queries that are asked together answer as each by itself") {
  for (const char* key : {"C1", "O'B", "ü€"}) insertCode(key);
  std::vector<std::string> queries;
  std::string each;
  for (const char* key : {"C1", "C2", "O''B", "ü€", "c1 ", ""}) {
    queries.push_back(std::string("select count(*) from odbc_suite where Code='") + key + "'");
    each += ask(queries.back()) + " ";
  }
  std::string together;
  for (const Value& answer : connection->askTogether(queries)) together += toText(answer) + " ";
  CHECK(together == each);
  queries.emplace_back("select count(*) from odbc_no_such_table");
  CHECK(errorOf([&] { connection->askTogether(queries); }) == code(Errors::NoSuchTable));
  CHECK(rows() == "3");
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: refusals have their numbers and leave all usable") {
  insertCode("C1");
  struct Row {
    std::string statement;
    ErrorNumber number;
  } refused[] = {
      {"SELECT * FRM odbc_suite", Errors::CommandErrors},
      {"SELECT * FROM odbc_no_such_table", Errors::NoSuchTable},
      {"INSERT INTO odbc_no_such_table VALUES (1)", Errors::NoSuchTable},
      {"INSERT INTO odbc_suite (Code) VALUES ('C1')", Errors::IntegrityViolation},
      {"INSERT INTO odbc_suite (Code) VALUES (NULL)", Errors::IntegrityViolation},
  };
  for (const auto& row : refused) {
    CAPTURE(row.statement);
    try {
      connection->Execute(row.statement);
      FAIL("not refused");
    } catch (const RuntimeError& error) {
      CHECK(error.number() == code(row.number));
      CHECK(error.description().find_first_of("[\n") == std::string::npos);
      CHECK_FALSE(error.description().empty());
    }
    REQUIRE_FALSE(connection->diagnostics().empty());
    CHECK_FALSE(connection->isLost());
    CHECK(rows() == "1");
  }
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: one text with other parameters from call to call") {
  insertCode("1");
  const std::string update = "UPDATE odbc_suite SET Name = ? WHERE Code = ?";
  const auto name = [&] { return ask("SELECT Name FROM odbc_suite"); };
  run(update, {"first", "1"});
  CHECK(name() == "first");
  run(update, {5, "1"});
  CHECK(name() == "5");
  // A mark without a value must not find the one of the call before.
  CHECK(errorOf([&] { run(update, {"third"}); }) != 0);
  CHECK(name() == "5");
  run(update, {Null{}, "1"});
  CHECK(name() == "");
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: a transaction that is taken back, or kept") {
  insertCode("before");
  connection->rollback();  // without one: nothing
  connection->beginTransaction();
  CHECK(errorOf([&] { connection->beginTransaction(); }) == code(Errors::InvalidProcedureCall));
  insertCode("inside");
  CHECK(rows() == "2");
  CHECK(connection->isInTransaction());
  connection->rollback();
  CHECK_FALSE(connection->isInTransaction());
  CHECK(rows() == "1");
  insertCode("after");
  connection->commit();  // without one: nothing
  connection->beginTransaction();
  insertCode("kept");
  connection->commit();
  connection->rollback();
  CHECK(rows() == "3");
}

TEST_CASE_FIXTURE(EveryEngine, "odbc: a command outlives the caller's connection") {
  const auto command = connection->newCommand();
  connection.reset();
  command->setCommandText("SELECT count(*) FROM odbc_suite");
  CHECK(firstField(command->Execute(-1)) == "0");
}

}  // namespace
}  // namespace velk
