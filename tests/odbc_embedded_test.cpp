// What the embedded database has of its own: opening, locks, procedures in a table, loose types.
#include <doctest/doctest.h>

#include <chrono>
#include <filesystem>

#include "platform/errors.h"
#include "tests/support/call_procedure.h"
#include "tests/support/checks.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

constexpr auto text = DataType::VarChar;

std::int32_t code(ErrorNumber number) {
  return static_cast<std::int32_t>(number);
}

TEST_CASE("embedded: names of database files") {
  CHECK(errorOf([] { embeddedConnectionString(""); }) == code(ErrorNumber::BadFileNameOrNumber));
  CHECK(errorOf([] { embeddedConnectionString(std::string_view("a\0b", 3)); }) ==
        code(ErrorNumber::BadFileNameOrNumber));
  const ScratchDatabase database;
  for (const std::string name :
       {" blanks in it ", "ümläut €.db", "\xF0\x9F\x98\x80.db", "100%41.db", "a=b,c.db", "it's.db",
        "a;Database=b.db", "{a}", "}", "a?mode=memory", "a#b", "tab\t", "[x]", "back\\slash"}) {
    CAPTURE(name);
    std::filesystem::copy_file(database.path(), database.path(name));
    openOdbc(embeddedConnectionString(database.path(name)))->Execute("CREATE TABLE t (a)");
    CHECK(std::filesystem::file_size(database.path(name)) > 0);
  }
  // Relative ones, where the beginning counts.
  for (const std::string name : {"file:x.db", "file:x.db?mode=memory", " x.db"}) {
    CAPTURE(name);
    const auto refused = errorOf([&] { openOdbc(embeddedConnectionString(name)); });
    CHECK(refused == code(ErrorNumber::ProviderFailure));  // no such file
  }
}

TEST_CASE("embedded: files that are no database") {
  const ScratchDatabase database;
  std::ofstream(database.path("text.csv")) << std::string(5000, 'x');
  for (const std::string name : {"missing.db", "text.csv", "no/such/folder.db"}) {
    CAPTURE(name);
    CHECK(errorOf([&] { openOdbc(embeddedConnectionString(database.path(name))); }) ==
          code(ErrorNumber::ProviderFailure));
  }
  CHECK_FALSE(std::filesystem::exists(database.path("missing.db")));
  CHECK(errorOf([] { openOdbc("Driver=no such driver"); }) == code(ErrorNumber::ProviderFailure));
}

TEST_CASE("embedded: a locked database is a time-out") {
  const ScratchDatabase database;
  const auto holder = database.open();
  holder->Execute("CREATE TABLE t (a)");
  const auto waiter = database.open({.commandTimeoutSeconds = 1});
  holder->beginTransaction();
  holder->Execute("INSERT INTO t VALUES (1)");

  const auto start = std::chrono::steady_clock::now();
  CHECK(errorOf([&] { waiter->Execute("INSERT INTO t VALUES (2)"); }) ==
        code(ErrorNumber::ProviderTimeout));
  const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
  CHECK(waited.count() > 0.5);
  CHECK(waited.count() < 10);
  CHECK_FALSE(waiter->isLost());
  holder->rollback();
  waiter->Execute("INSERT INTO t VALUES (3)");
  CHECK(ask(*waiter, "SELECT a FROM t") == "3");
}

TEST_CASE("embedded: reading in a transaction keeps nobody from writing") {
  const ScratchDatabase database;
  const auto writer = database.open({.commandTimeoutSeconds = 1});
  writer->Execute("PRAGMA journal_mode = WAL");
  writer->Execute("CREATE TABLE t (a)");
  const auto reader = database.open();
  reader->beginTransaction();
  CHECK(ask(*reader, "SELECT count(*) FROM t") == "0");
  CHECK(errorOf([&] { writer->Execute("INSERT INTO t VALUES (1)"); }) == 0);
}

TEST_CASE("embedded: foreign keys hold on every connection") {
  const ScratchDatabase database;
  database.open()->Execute("CREATE TABLE p (a PRIMARY KEY)");
  database.open()->Execute("CREATE TABLE c (a REFERENCES p)");
  CHECK(errorOf([&] { database.open()->Execute("INSERT INTO c VALUES (1)"); }) ==
        code(ErrorNumber::IntegrityViolation));
}

TEST_CASE("embedded: cells are read whole and as what they are") {
  const ScratchDatabase database;
  const auto connection = database.open();
  connection->Execute("CREATE TABLE t (i INTEGER, r REAL, d DATE, v VARCHAR(3))");
  connection->Execute("INSERT INTO t VALUES (9007199254740993, 2.5, '2008-04-01', 'too long')");
  connection->Execute("INSERT INTO t VALUES ('x', 'y', 'z', 1)");
  const auto rows = connection->Execute("SELECT i, r, d, v FROM t");
  CHECK((rows->field(0) == Value("9007199254740993")));
  CHECK((rows->field(1) == Value(2.5)));
  CHECK((rows->field(2) == Value(Date{39539})));
  CHECK((rows->field(3) == Value("too long")));
  rows->MoveNext();
  CHECK((rows->field(0) == Value("x")));
  CHECK((rows->field(1) == Value("y")));
  CHECK((rows->field(2) == Value("z")));
  CHECK((rows->field(3) == Value("1")));

  // Lengths around the piece that is read at a time, and a character that straddles two pieces.
  for (const std::size_t length : {1022U, 1023U, 1024U, 2046U, 2047U, 100'000U}) {
    CAPTURE(length);
    const std::string whole = std::string(length, 'x') + "\xF0\x9F\x98\x80" + "end";
    CHECK(ask(*connection, "SELECT '" + whole + "'") == whole);
  }
  CHECK(ask(*connection, "SELECT 'Zoë''s €' FROM t WHERE 'é' IN ('é')") == "Zoë's €");
  const std::string clause(1'000'000, ' ');
  CHECK(ask(*connection, "SELECT 1" + clause + "+ 1") == "2");
}

struct ProcedureTable {
  ScratchDatabase database;
  std::shared_ptr<OdbcConnection> connection = database.open();

  ProcedureTable() {
    connection->Execute("CREATE TABLE t (a TEXT NOT NULL, b TEXT)");
    connection->Execute(
        "CREATE TABLE StoredProcedure (name TEXT COLLATE NOCASE, step, statement, arguments)");
    add("sp_swap", 1, "INSERT INTO t (b, a) VALUES (?, ?)", "2,1");
    add("sp_two", 2, "INSERT INTO t VALUES (?, 'second')", "2");
    add("sp_two", 1, "INSERT INTO t VALUES (?, 'first')", "1");
    add("sp_results", 1, "SELECT 1", "");
    add("sp_results", 2, "DELETE FROM t", "");
    add("sp_results", 3, "SELECT ?, ?", " 1 , 1");
  }
  void add(const char* name, int step, const char* statement, const char* arguments) {
    runCommand(*connection, CommandType::Text, "INSERT INTO StoredProcedure VALUES (?, ?, ?, ?)",
               {{name, text}, {step, DataType::Integer}, {statement, text}, {arguments, text}});
  }
  std::string rows() { return ask(*connection, "SELECT group_concat(a || b, ' ') FROM t"); }
};

TEST_CASE("embedded: procedures are steps in a table") {
  ProcedureTable table;
  Connection& connection = *table.connection;
  const auto reply = callProcedure(connection, "SP_SWAP", {{"A", text}, {"B", text}});
  REQUIRE(reply != nullptr);
  CHECK(reply->State() == stateClosed);
  CHECK(reply->NextRecordset() == nullptr);
  callProcedure(connection, "sp_swap", {{"C", text}, {"D", text}});
  CHECK(table.rows() == "AB CD");
  callProcedure(connection, "sp_two", {{"1", text}, {"2", text}});
  CHECK(table.rows() == "AB CD 1first 2second");

  auto results = callProcedure(connection, "sp_results", {{"x", text}});
  CHECK((results->field(0) == Value(1)));
  results = results->NextRecordset();
  REQUIRE(results != nullptr);
  CHECK((results->field(1) == Value("x")));
  CHECK(results->NextRecordset() == nullptr);
}

TEST_CASE("embedded: a refused step takes the steps before it along") {
  ProcedureTable table;
  for (int i = 0; i < 2; ++i) {
    CHECK(errorOf([&] {
            callProcedure(*table.connection, "sp_two", {{"1", text}, {Null{}, text}});
          }) == code(ErrorNumber::IntegrityViolation));
    CHECK(ask(*table.connection, "SELECT count(*) FROM t") == "0");
  }
  table.connection->beginTransaction();
  callProcedure(*table.connection, "sp_two", {{"1", text}, {"2", text}});
  table.connection->rollback();
  CHECK(ask(*table.connection, "SELECT count(*) FROM t") == "0");
  callProcedure(*table.connection, "sp_two", {{"1", text}, {"2", text}});
  CHECK(ask(*table.connection, "SELECT count(*) FROM t") == "2");
}

TEST_CASE("embedded: procedures that cannot be called") {
  ProcedureTable table;
  struct Row {
    std::string name;
    std::size_t parameters;
    std::string description;
  };
  const Row rows[] = {
      {"sp_none", 0, "Could not find stored procedure 'sp_none'."},
      {"sp_swap", 1, "Stored procedure 'sp_swap' takes 2 parameters; the call has 1."},
      {"sp_swap", 3, "Stored procedure 'sp_swap' takes 2 parameters; the call has 3."},
  };
  for (const Row& row : rows) {
    CAPTURE(row.name);
    try {
      callProcedure(*table.connection, row.name, Parameters(row.parameters, {"x", text}));
      FAIL("not refused");
    } catch (const RuntimeError& error) {
      CHECK(error.number() == code(ErrorNumber::CommandErrors));
      CHECK(error.description() == row.description);
    }
  }
  const ScratchDatabase without;
  CHECK(errorOf([&] { callProcedure(*without.open(), "sp_swap", {}); }) ==
        code(ErrorNumber::CommandErrors));
}

TEST_CASE("embedded: a definition that makes no sense names itself") {
  ProcedureTable table;
  table.add("sp_broken", 1, "INSERT INTO t VALUES ('x', ?)", "0");
  CHECK_THROWS_WITH_AS(callProcedure(*table.connection, "sp_swap", {{"A", text}, {"B", text}}),
                       "Stored procedure 'sp_broken' lists an argument that is no parameter.",
                       RuntimeError);
}

}  // namespace
}  // namespace velk
