// What the embedded database has of its own: opening, locks, procedures in a table, loose types.
#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "base/errors.h"
#include "samples/company/sample_company.h"
#include "tests/support/database_calls.h"

namespace velk {
namespace {

TEST_CASE("embedded: names of database files") {
  const ScratchDatabase database;
  for (const std::string name :
       {" blanks in it ", "ümläut €.db", "\xF0\x9F\x98\x80.db", "100%41.db", "a=b,c.db", "it's.db",
        "a;Database=b.db", "{a}", "}", "a?mode=memory", "a#b", "tab\t", "[x]", "back\\slash"}) {
    CAPTURE(name);
    std::filesystem::copy_file(database.path(), database.path(name));
    openOdbc(embeddedConnectionString(database.path(name)))->Execute("CREATE TABLE t (a)");
    CHECK(std::filesystem::file_size(database.path(name)) > 0);
  }
}

TEST_CASE("embedded: files that are no database") {
  const ScratchDatabase database;
  std::ofstream(database.path("text.csv")) << std::string(5000, 'x');
  // In relative ones the beginning counts.
  for (const std::string& path :
       {database.path("missing.db"), database.path("text.csv"), database.path("no/such/folder.db"),
        std::string("file:x.db"), std::string("file:x.db?mode=memory"), std::string(" x.db")}) {
    CAPTURE(path);
    CHECK(errorOf([&] { openOdbc(embeddedConnectionString(path)); }) ==
          code(Errors::ProviderFailure));
  }
  CHECK_FALSE(std::filesystem::exists(database.path("missing.db")));
  CHECK(errorOf([] { openOdbc("Driver=no such driver"); }) == code(Errors::ProviderFailure));
  for (const std::string& path : {std::string(), std::string("a\0b", 3)}) {
    CHECK(errorOf([&] { embeddedConnectionString(path); }) == code(Errors::BadFileNameOrNumber));
  }
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
        code(Errors::ProviderTimeout));
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

TEST_CASE("embedded: cells are read whole and as what they are") {
  const ScratchDatabase database;
  const auto connection = database.open();
  connection->Execute("CREATE TABLE t (i INTEGER, r REAL, d DATE, v VARCHAR(3))");
  connection->Execute("INSERT INTO t VALUES (9007199254740993, 2.5, '2008-04-01', 'too long')");
  connection->Execute("INSERT INTO t VALUES ('x', 'y', 'z', 1)");
  const auto reply = connection->Execute("SELECT i, r, d, v FROM t");
  for (const std::vector<Value>& row :
       {std::vector<Value>{"9007199254740993", 2.5, Date{39539}, "too long"},
        {"x", "y", "z", "1"}}) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      CAPTURE(toText(row[i]));
      CHECK((reply->field(i) == row[i]));
    }
    reply->MoveNext();
  }
  // Lengths around the piece that is read at a time, and a character that straddles two pieces.
  for (const std::size_t length : {1022U, 1023U, 1024U, 2046U, 2047U, 100'000U}) {
    CAPTURE(length);
    const std::string whole = std::string(length, 'x') + "\xF0\x9F\x98\x80" + "end";
    CHECK(ask(*connection, "SELECT '" + whole + "'") == whole);
  }
  CHECK(ask(*connection, "SELECT 1" + std::string(1'000'000, ' ') + "+ 1") == "2");
}

struct ProcedureTable {
  ScratchDatabase database;
  std::shared_ptr<OwnConnection> connection = database.open();

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
    runCommand(*connection, "INSERT INTO StoredProcedure VALUES (?, ?, ?, ?)",
               {name, step, statement, arguments});
  }
  std::shared_ptr<Recordset> call(std::string_view name, const Parameters& parameters) {
    return runCommand(*connection, name, parameters, CommandType::StoredProcedure);
  }
  std::string rows() {
    return ask(*connection, "SELECT ifnull(group_concat(a || b, ' '), 'none') FROM t");
  }
};

TEST_CASE_FIXTURE(ProcedureTable, "embedded: procedures are steps in a table") {
  const auto reply = call("SP_SWAP", {"A", "B"});
  CHECK(reply->State() == stateClosed);
  CHECK(reply->NextRecordset() == nullptr);
  call("sp_swap", {"C", "D"});
  call("sp_two", {"1", "2"});
  CHECK(rows() == "AB CD 1first 2second");

  auto results = call("sp_results", {"x"});
  CHECK((results->field(0) == Value(1)));
  results = results->NextRecordset();
  REQUIRE(results != nullptr);
  CHECK((results->field(1) == Value("x")));
  CHECK(results->NextRecordset() == nullptr);
}

TEST_CASE_FIXTURE(ProcedureTable, "embedded: a refused step takes the steps before it along") {
  for (int i = 0; i < 2; ++i) {
    CHECK(errorOf([&] { call("sp_two", {"1", Null{}}); }) == code(Errors::IntegrityViolation));
    CHECK(connection->changedNothing());
    CHECK(rows() == "none");
  }
  connection->beginTransaction();
  call("sp_two", {"1", "2"});
  connection->rollback();
  CHECK(rows() == "none");
  call("sp_two", {"1", "2"});
  CHECK(rows() == "1first 2second");
}

TEST_CASE("embedded: a statement that keeps a part when it fails takes it along, too") {
  const std::string rows = "INTO u SELECT ? UNION ALL SELECT 1 UNION ALL SELECT 1";
  const struct {
    std::string conflict, insert;
  } cases[] = {{"", "INSERT "}, {" ON CONFLICT FAIL", "INSERT "}, {"", "INSERT OR FAIL "}};
  for (const auto& row : cases) {
    CAPTURE(row.conflict);
    CAPTURE(row.insert);
    ProcedureTable table;
    table.connection->Execute("CREATE TABLE u (a UNIQUE" + row.conflict + ")");
    table.add("sp_rows", 1, (row.insert + rows).c_str(), "1");
    CHECK(errorOf([&] { table.call("sp_rows", {0}); }) == code(Errors::IntegrityViolation));
    CHECK(table.connection->changedNothing());
    CHECK(ask(*table.connection, "SELECT count(*) FROM u") == "0");
  }
}

TEST_CASE_FIXTURE(ProcedureTable, "embedded: no procedure and no trigger leaves the database") {
  const std::string file = database.path("made");
  const std::string write = "blob_export('x', '" + file + "')";
  const std::string twoStatements = "has more than one statement";
  const std::string another =
      "is no statement that begins with SELECT, INSERT, UPDATE, DELETE or WITH";
  const std::string beyond = "reaches beyond the database";
  const std::pair<std::string, std::string> rows[] = {
      {"ATTACH '" + file + "' AS x", another},
      {"VACUUM INTO '" + file + "'", another},
      {"PRAGMA writable_schema = ON", another},
      {"/* SELECT */ ATTACH 'x' AS x", another},
      {"-- SELECT\nDETACH x", another},
      {"", another},
      {"SELECTED", another},
      {"SELECT 1; DELETE FROM t", twoStatements},
      {"SELECT ';'; /* ; */ DELETE FROM t", twoStatements},
      {"SELECT 1 -- ;\n; DELETE FROM t", twoStatements},
      {"SELECT Load_Extension('x')", beyond},
      {"SELECT \"load_extension\"('x')", beyond},
      {"SELECT " + write, beyond},
      {"select ';', \"a;b\" from (select 1 as \"a;b\")", ""},
      {" /* a */ INSERT INTO t VALUES ('a;', 'b')", ""},
      {"WITH a AS (SELECT 1) SELECT * FROM a ; ", ""}};
  for (const auto& row : rows) {
    const std::string& statement = row.first;
    const std::string& fault = row.second;
    CAPTURE(statement);
    ProcedureTable table;
    table.add("sp_step", 7, statement.c_str(), "");
    std::string description;
    trapErrors([&] { table.call("sp_step", {}); },
               [&](const RuntimeError& error) { description = error.description(); });
    CHECK(description ==
          (fault.empty() ? "" : "Step 7 of stored procedure 'sp_step' " + fault + "."));
  }
  for (const std::string& action : {write, std::string("load_extension('x')")}) {
    CAPTURE(action);
    ProcedureTable table;
    table.connection->Execute("CREATE TRIGGER r AFTER INSERT ON t BEGIN SELECT " + action +
                              "; END");
    CHECK(errorOf([&] { table.call("sp_swap", {"A", "B"}); }) != 0);
  }
  CHECK_FALSE(std::filesystem::exists(file));
}

TEST_CASE_FIXTURE(ProcedureTable, "embedded: procedures that cannot be called") {
  const auto refusal = [&](const char* name, std::size_t parameters) -> std::string {
    try {
      call(name, Parameters(parameters, "x"));
    } catch (const RuntimeError& error) {
      CHECK(error.is(Errors::CommandErrors));
      CHECK(connection->changedNothing());
      return error.description();
    }
    return "called";
  };
  CHECK(refusal("sp_none", 0) == "Could not find stored procedure 'sp_none'.");
  for (const std::size_t count : {1U, 3U}) {
    CHECK(refusal("sp_swap", count) ==
          "Stored procedure 'sp_swap' takes 2 parameters; the call has " + std::to_string(count) +
              ".");
  }
  connection = database.open();
  connection->Execute("DROP TABLE StoredProcedure");
  CHECK(refusal("sp_swap", 2) == "Could not find stored procedure 'sp_swap'.");
}

TEST_CASE("sample company: a new file or nothing") {
  const ScratchDatabase folder;
  const auto files = [&] {
    Texts names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path(""))) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  };
  CHECK(errorOf([&] { createSampleCompany(folder.path()); }) == code(Errors::FileAlreadyOpen));
  CHECK(std::filesystem::file_size(folder.path()) == 0);
  CHECK(errorOf([&] { createSampleCompany(folder.path("no/company.db")); }) ==
        code(Errors::PathFileAccess));
  CHECK(errorOf([] { createSampleCompany(""); }) == code(Errors::BadFileNameOrNumber));
  CHECK(files() == Texts{"scratch.db"});

  std::ofstream(folder.path("company.db.new")) << "somebody's own";
  createSampleCompany(folder.path("company.db"));
  CHECK(files() == Texts{"company.db", "company.db.new", "scratch.db"});
}

}  // namespace
}  // namespace velk
