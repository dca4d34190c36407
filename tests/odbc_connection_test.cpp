// How any database behaves behind the connection. Always run on the embedded database, and on the
// one that OPNIMP_TEST_ODBC names by a connection string (its user has to be allowed to make a
// table).
#include <doctest/doctest.h>

#include <cstdlib>
#include <functional>

#include "platform/errors.h"
#include "tests/support/call_procedure.h"
#include "tests/support/checks.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

using Errors = ErrorNumber;

std::int32_t code(ErrorNumber number) {
  return static_cast<std::int32_t>(number);
}

constexpr auto text = DataType::VarChar;

// A connection with an empty table for the suite.
void onEveryEngine(const std::function<void(const std::shared_ptr<OdbcConnection>&)>& test) {
  const auto run = [&](const std::shared_ptr<OdbcConnection>& connection) {
    connection->Execute("DROP TABLE IF EXISTS odbc_suite");
    connection->Execute(
        "CREATE TABLE odbc_suite (Code varchar(20) NOT NULL PRIMARY KEY, Name nvarchar(2048) NULL,"
        " Pieces int NULL, Amount float NULL, Made datetime NULL)");
    test(connection);
  };
  SUBCASE("embedded") {
    const ScratchDatabase database;
    run(database.open());
  }
  if (const char* other = std::getenv("OPNIMP_TEST_ODBC")) {
    SUBCASE("OPNIMP_TEST_ODBC") {
      run(openOdbc(other));
    }
  }
}

TEST_CASE("odbc: which databases") {
  onEveryEngine([](const auto& connection) { CHECK(connection->diagnostics().empty()); });
  if (std::getenv("OPNIMP_TEST_ODBC") == nullptr) {
    MESSAGE("the embedded database only: OPNIMP_TEST_ODBC is not set");
  }
}

void insert(Connection& connection, const Parameters& fields) {
  runCommand(connection, CommandType::Text, "INSERT INTO odbc_suite VALUES (?, ?, ?, ?, ?)",
             fields);
}

void insertCode(Connection& connection, const std::string& key) {
  insert(connection, {{key, text},
                      {Null{}, text},
                      {Null{}, DataType::Integer},
                      {Null{}, DataType::Double},
                      {Null{}, DataType::Date}});
}

TEST_CASE("odbc: moving through a record set") {
  onEveryEngine([](const auto& connection) {
    auto rows = connection->Execute("SELECT Code FROM odbc_suite");
    CHECK(rows->State() == stateOpen);
    CHECK(rows->isBOF());
    CHECK(rows->isEOF());
    CHECK(errorOf([&] { rows->field(0); }) == code(Errors::NoCurrentRecord));
    CHECK(errorOf([&] { rows->MoveNext(); }) == code(Errors::NoCurrentRecord));

    insertCode(*connection, "B");
    insertCode(*connection, "A");
    rows = connection->Execute("SELECT Code, Name FROM odbc_suite ORDER BY Code");
    CHECK_FALSE(rows->isBOF());
    CHECK((rows->field(0) == Value("A")));
    CHECK((rows->field(0) == Value("A")));  // a field may be read again
    CHECK(isNull(rows->field(1)));
    CHECK(errorOf([&] { rows->field(2); }) == code(Errors::ItemNotFound));
    rows->MoveNext();
    CHECK((rows->field(0) == Value("B")));
    rows->MoveNext();
    CHECK(rows->isEOF());
    CHECK_FALSE(rows->isBOF());
    CHECK(rows->NextRecordset() == nullptr);
  });
}

TEST_CASE("odbc: closed record sets") {
  onEveryEngine([](const auto& connection) {
    const auto changed = connection->Execute("DELETE FROM odbc_suite");
    REQUIRE(changed != nullptr);
    CHECK(changed->State() == stateClosed);
    CHECK(errorOf([&] { changed->isEOF(); }) == code(Errors::ObjectClosed));
    CHECK(errorOf([&] { changed->field(0); }) == code(Errors::ObjectClosed));
    CHECK(errorOf([&] { changed->Close(); }) == code(Errors::ObjectClosed));
    CHECK(changed->NextRecordset() == nullptr);

    const auto rows = connection->Execute("SELECT Code FROM odbc_suite");
    rows->Close();
    CHECK(rows->State() == stateClosed);
    CHECK(errorOf([&] { rows->Close(); }) == code(Errors::ObjectClosed));
  });
}

TEST_CASE("odbc: values there and back") {
  onEveryEngine([](const auto& connection) {
    struct Row {
      Value name, pieces, amount, made;
    };
    const Row rows[] = {
        {"plain", 0, 0.0, Date{39538}},
        {"", -2147483647 - 1, -0.5, Date{39538.75}},
        {"O'Brien & Söhne", 2147483647, 1e15, Date{2}},
        {"\xF0\x9F\x98\x80 beyond the first plane", 7, 123456.78, Date{-1.25}},
        {std::string(2048, 'x'), 1, 1e-9, Date{2958465}},
        {Null{}, Null{}, Null{}, Null{}},
    };
    for (const Row& row : rows) {
      CAPTURE(toText(row.name));
      connection->Execute("DELETE FROM odbc_suite");
      insert(*connection, {{"K", text},
                           {row.name, text},
                           {row.pieces, DataType::Integer},
                           {row.amount, DataType::Double},
                           {row.made, DataType::Date}});
      const auto back = connection->Execute("SELECT Name, Pieces, Amount, Made FROM odbc_suite");
      CHECK((back->field(0) == row.name));
      CHECK((back->field(1) == row.pieces));
      CHECK((back->field(2) == row.amount));
      CHECK((back->field(3) == row.made));
    }
  });
}

TEST_CASE("odbc: literals in a query mean what they say") {
  onEveryEngine([](const auto& connection) {
    for (const char* key : {"C1", "O'B", "a?b", "--", "[x]", "ü€", "C2"})
      insertCode(*connection, key);
    const auto count = [&](std::string_view literal) {
      return ask(*connection,
                 "select count(*) from odbc_suite where Code=N'" + std::string(literal) + "'");
    };
    // In turns, so that an answer kept from the query before would be seen.
    CHECK(count("C1") == "1");
    CHECK(count("C3") == "0");
    CHECK(count("C2") == "1");
    CHECK(count("O''B") == "1");
    CHECK(count("") == "0");
    CHECK(count("a?b") == "1");
    CHECK(count("--") == "1");
    CHECK(count("[x]") == "1");
    CHECK(count("ü€") == "1");
    CHECK(count("x' or '1'='1") == "7");
    CHECK(count("C1' or Code='C2") == "2");
    CHECK(count("C1' -- ") == "1");
    CHECK(count("C1") == "1");
    CHECK(errorOf([&] { count("O'B"); }) == code(Errors::CommandErrors));
    CHECK(errorOf([&] { count("C1'C2'"); }) == code(Errors::CommandErrors));
    CHECK(count("C1") == "1");
  });
}

TEST_CASE("odbc: refusals have their numbers and leave the connection usable") {
  onEveryEngine([](const auto& connection) {
    insertCode(*connection, "C1");
    struct Row {
      std::string statement;
      ErrorNumber number;
    };
    const Row rows[] = {
        {"SELECT * FRM odbc_suite", Errors::CommandErrors},
        {"SELECT * FROM odbc_no_such_table", Errors::NoSuchTable},
        {"INSERT INTO odbc_no_such_table VALUES (1)", Errors::NoSuchTable},
        {"INSERT INTO odbc_suite (Code) VALUES ('C1')", Errors::IntegrityViolation},
        {"INSERT INTO odbc_suite (Code) VALUES (NULL)", Errors::IntegrityViolation},
    };
    for (const Row& row : rows) {
      CAPTURE(row.statement);
      CHECK(errorOf([&] { connection->Execute(row.statement); }) == code(row.number));
      REQUIRE_FALSE(connection->diagnostics().empty());
      CHECK(connection->diagnostics().front().message.find('[') == 0);
      CHECK_FALSE(connection->isLost());
      CHECK(ask(*connection, "SELECT count(*) FROM odbc_suite") == "1");
    }
    try {
      connection->Execute("INSERT INTO odbc_suite (Code) VALUES ('C1')");
      FAIL("not refused");
    } catch (const RuntimeError& error) {
      CHECK(error.description().find('[') == std::string::npos);
      CHECK_FALSE(error.description().empty());
    }
  });
}

TEST_CASE("odbc: a text longer than a parameter is refused, never cut") {
  onEveryEngine([](const auto& connection) {
    const auto tryLength = [&](std::size_t length, const char* unit) {
      std::string name;
      for (std::size_t i = 0; i < length; ++i) name += unit;
      connection->Execute("DELETE FROM odbc_suite");
      return errorOf([&] {
        runCommand(*connection, CommandType::Text,
                   "INSERT INTO odbc_suite (Code, Name) VALUES ('K', ?)", {{name, text}});
      });
    };
    CHECK(tryLength(2048, "x") == 0);
    CHECK(tryLength(2049, "x") == code(Errors::WrongArgumentType));
    CHECK(tryLength(2048, "é") == 0);
    CHECK(tryLength(2049, "é") == code(Errors::WrongArgumentType));
    CHECK(ask(*connection, "SELECT count(*) FROM odbc_suite") == "0");
  });
}

TEST_CASE("odbc: commands that the library would not take") {
  onEveryEngine([](const auto& connection) {
    const auto command = connection->newCommand();
    command->setCommandText("DELETE FROM odbc_suite WHERE Code = ?");
    CHECK(errorOf([&] { command->setValue(0, "A"); }) == code(Errors::ItemNotFound));
    command->Append("p", 8, inputParameter, 2048);  // a type code that is not in use
    CHECK(errorOf([&] { command->Execute(-1); }) == code(Errors::WrongArgumentType));
    const auto output = connection->newCommand();
    output->setCommandText("DELETE FROM odbc_suite WHERE Code = ?");
    output->Append("p", 200, 2, 2048);
    CHECK(errorOf([&] { output->Execute(-1); }) == code(Errors::WrongArgumentType));
  });
}

TEST_CASE("odbc: one text with other parameters from call to call") {
  onEveryEngine([](const auto& connection) {
    insertCode(*connection, "1");
    const std::string update = "UPDATE odbc_suite SET Name = ? WHERE Code = ?";
    const auto name = [&] { return ask(*connection, "SELECT Name FROM odbc_suite"); };
    runCommand(*connection, CommandType::Text, update, {{"first", text}, {"1", text}});
    CHECK(name() == "first");
    runCommand(*connection, CommandType::Text, update, {{5, DataType::Integer}, {"1", text}});
    CHECK(name() == "5");
    // A mark without a value must not find the one of the call before.
    CHECK(errorOf([&] {
            runCommand(*connection, CommandType::Text, update, {{"third", text}});
          }) != 0);
    CHECK(name() == "5");
    runCommand(*connection, CommandType::Text, update, {{Null{}, text}, {"1", text}});
    CHECK(name() == "");
  });
}

TEST_CASE("odbc: a transaction that is taken back") {
  onEveryEngine([](const auto& connection) {
    insertCode(*connection, "before");
    connection->rollback();  // without one: nothing
    connection->beginTransaction();
    CHECK(errorOf([&] { connection->beginTransaction(); }) == code(Errors::InvalidProcedureCall));
    insertCode(*connection, "inside");
    CHECK(ask(*connection, "SELECT count(*) FROM odbc_suite") == "2");
    connection->rollback();
    CHECK(ask(*connection, "SELECT count(*) FROM odbc_suite") == "1");
    insertCode(*connection, "after");
    CHECK(ask(*connection, "SELECT count(*) FROM odbc_suite") == "2");
  });
}

TEST_CASE("odbc: more different statements than are kept prepared") {
  onEveryEngine([](const auto& connection) {
    insertCode(*connection, "A");
    for (int round = 0; round < 2; ++round) {
      for (int i = 0; i < 70; ++i) {
        CAPTURE(i);
        const std::string query = "SELECT Code, " + std::to_string(i) + " FROM odbc_suite";
        const auto rows = connection->Execute(query + " WHERE Code = 'A'");
        CHECK(toText(rows->field(1)) == std::to_string(i));
      }
    }
  });
}

TEST_CASE("odbc: a command outlives the caller's connection") {
  onEveryEngine([](const auto& connection) {
    std::shared_ptr<Connection> mine = connection;
    const auto command = mine->newCommand();
    mine.reset();
    command->setCommandText("SELECT count(*) FROM odbc_suite");
    CHECK(toText(command->Execute(-1)->field(0)) == "0");
  });
}

}  // namespace
}  // namespace velk
