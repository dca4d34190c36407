// How long a run waits, whom for, and that one which is to change nothing cannot.
#include <doctest/doctest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <map>
#include <regex>
#include <thread>

#include "tests/support/engines.h"
#include "tests/support/runner.h"
#include "tests/support/salesmen.h"

namespace velk {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Holds the opening balance of customer C001 while it lives: in a session of its own, of an
/// embedded database in a process of its own.
class LockHolder {
 public:
  LockHolder(const TestEngine& engine, EngineCompany& company, const RunnerWorld& world) {
    const std::string taken = "INSERT INTO CustomerOpeningBalance VALUES ('C001', 0)";
    if (!engine.isEmbedded()) {
      session_ = company.connection();
      session_->beginTransaction();
      session_->Execute(taken);
      company.reconnect();
      return;
    }
    shell_ = ::popen(("sqlite3 " + company.database()).c_str(), "w");
    std::fputs(("BEGIN IMMEDIATE;\n.shell touch " + world.folder.path("held") + "\n").c_str(),
               shell_);
    std::fflush(shell_);
    for (int i = 0; i < 500 && !world.folder.has("held"); ++i) std::this_thread::sleep_for(10ms);
  }
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;
  ~LockHolder() {
    if (shell_ != nullptr) ::pclose(shell_);
  }

 private:
  std::shared_ptr<OwnConnection> session_;
  std::FILE* shell_ = nullptr;
};

TEST_CASE("waits: a lock is waited for as long as the option says, and its holder is named") {
  struct Row {
    const char* engine;
    bool hasProcess;  // the account of the import has the right PROCESS
    const char* told;
  };
  const Row rows[] = {
      {"embedded", false, R"(record 1 waits for a lock. It is held by process \d+ \(sqlite3\)\.)"},
      {"postgresql", false,
       R"(record 1 waits for a lock. It is held by session \d+ of user postgres\.)"},
      {"mariadb", false, "record 1 has waited for .* only an account with the right PROCESS"},
      {"mariadb", true,
       R"(record 1 waits for a lock. It is held by session \d+ of user admin from [\w.]+:\d+, )"
       R"(in a transaction since \d{4}-)"}};
  for (const TestEngine& engine : testEngines()) {
    for (const Row& row : rows) {
      if (std::string_view(row.engine) != engine.name) continue;
      CAPTURE(row.told);
      RunnerWorld world;
      world.surroundings.program = OPNIMP_PROGRAM;
      EngineCompany company(engine, world.folder.path(""));
      const std::vector<std::string> options{"--database",  company.database(),
                                             "--lock-wait", "2",
                                             "--metrics",   world.folder.path("m.prom")};
      // An embedded database gets its id by this.
      CHECK(world.importLines({openingTitles, good3}, options).status == 0);
      const std::shared_ptr<OwnConnection> administrator = company.connection();
      if (row.hasProcess) administrator->Execute("GRANT PROCESS ON *.* TO opnimp_import");
      const auto start = Clock::now();
      const LockHolder other(engine, company, world);
      const Ran ran = world.importLines({openingTitles, good1, good2}, options);
      company.reconnect();
      if (row.hasProcess) {
        company.connection()->Execute("REVOKE PROCESS ON *.* FROM opnimp_import");
      }
      CHECK(ran.status == 5);
      CHECK(Clock::now() - start < 3500ms);
      CHECK_MESSAGE(std::regex_search(ran.err, std::regex(std::string("opnimp: ") + row.told)),
                    ran.err);
      CHECK(contains(ran.out, "--lock-wait SECONDS"));
      const bool isNamed = !contains(row.told, "PROCESS");
      CHECK(contains(world.folder.read("m.prom"), "in.csv\"} " + std::string(isNamed ? "1" : "0") +
                                                      "\n# TYPE opnimp_host_changes"));
    }
  }
}

/// Keeps every other session from a table.
const std::map<std::string, std::array<const char*, 2>> takeTable{
    {"postgresql",
     {"LOCK TABLE Customer IN ACCESS EXCLUSIVE MODE", R"(by session \d+ of user \w+)"}},
    {"mariadb", {"LOCK TABLES Customer WRITE", R"(by a session that the server does not name)"}}};

TEST_CASE("waits: what is asked ahead does not wait for a lock a second time") {
  for (const TestEngine& engine : testEngines()) {
    if (!takeTable.contains(engine.name)) continue;
    CAPTURE(std::string(engine.name));
    RunnerWorld world;
    world.surroundings.program = OPNIMP_PROGRAM;
    EngineCompany company(engine, world.folder.path(""));
    const auto& [take, told] = takeTable.at(engine.name);
    const std::shared_ptr<OwnConnection> other = company.connection();
    other->beginTransaction();
    other->Execute(take);
    company.reconnect();
    const auto start = Clock::now();
    const Ran ran = world.importLines({openingTitles, good1, good2},
                                      {"--database", company.database(), "--lock-wait", "2"});
    CHECK(Clock::now() - start < 3500ms);
    CHECK(ran.status == 5);
    CHECK(contains(ran.out, "the database did not answer in time"));
    CHECK_MESSAGE(std::regex_search(ran.err, std::regex(told)), ran.err);
    // It is not given up for those that come later.
    CHECK_FALSE(contains(ran.out, "each in its record's turn"));
  }
}

TEST_CASE("waits: an entry that travels with its note waits once for a lock") {
  for (const TestEngine& engine : testEngines()) {
    if (!takeTable.contains(engine.name)) continue;
    CAPTURE(std::string(engine.name));
    RunnerWorld world;
    EngineCompany company(engine, {});
    const auto start = Clock::now();
    const LockHolder other(engine, company, world);
    const Ran ran = world.importLines({openingTitles, good1},
                                      {"--database", company.database(), "--wait", "1"});
    CHECK(Clock::now() - start < 1900ms);
    CHECK(ran.status == 5);
  }
}

TEST_CASE("waits: a database that takes long to open") {
  static RunnerWorld world;  // the opening that is given up still uses it
  world.surroundings.openDatabase = [](const std::string&, const OdbcOptions& options) {
    CHECK(options.loginTimeoutSeconds == 1);
    std::this_thread::sleep_for(4s);
    return std::shared_ptr<OwnConnection>();
  };
  const auto start = Clock::now();
  const Ran ran = world.importLines(
      {openingTitles, good1},
      {"--database", "Driver=x;Server=y", "--connect-wait", "1", "--log-format", "json"});
  CHECK(Clock::now() - start < 4s);
  CHECK(ran.status == 4);
  CHECK(contains(ran.err, "--connect-wait SECONDS gives it longer"));
  for (const char* option : {"--connect-wait", "--lock-wait", "--wait"}) {
    for (const char* value : {"0", "-1", "86401", "x", "1.5"}) {
      CHECK(world.import("in.csv", {"--database", "Driver=x", option, value}).status == 3);
    }
  }
}

/// The check of a salesman's type changes something.
const std::map<std::string, std::vector<const char*>> writingCheck{
    {"embedded",
     {"UPDATE StoredProcedure SET statement = 'INSERT INTO BankMaster VALUES (''B'', ?)' "
      "WHERE name = 'Velk_sp_checkDefault_DSTypeValue'"}},
    {"postgresql",
     {"CREATE OR REPLACE FUNCTION Velk_sp_checkDefault_DSTypeValue(value text) RETURNS SETOF "
      "integer LANGUAGE sql SECURITY DEFINER AS $$ INSERT INTO BankMaster VALUES ('B', value); "
      "SELECT 1 $$"}},
    {"mariadb",
     {"DROP PROCEDURE Velk_sp_checkDefault_DSTypeValue",
      "CREATE PROCEDURE Velk_sp_checkDefault_DSTypeValue(value varchar(2048)) BEGIN INSERT INTO "
      "BankMaster VALUES ('B', value); COMMIT; END",
      "GRANT EXECUTE ON PROCEDURE Velk_sp_checkDefault_DSTypeValue TO opnimp_import"}}};

TEST_CASE("waits: a look-up that would write is refused by the engine in a dry run") {
  for (const TestEngine& engine : testEngines()) {
    if (!writingCheck.contains(engine.name)) continue;
    CAPTURE(std::string(engine.name));
    RunnerWorld world;
    world.kind = "salesman";
    const EngineCompany company(engine, world.folder.path(""));
    for (const char* statement : writingCheck.at(engine.name)) {
      company.connection()->Execute(statement);
    }
    const std::string file =
        world.folder.write("s.xls", workbook({salesmanTitles, "Mann|A|1|2||Retail|YES"}));
    const auto import = [&](std::vector<std::string> more) {
      more.insert(more.end(), {"--json", "--database", company.database()});
      return world.import(file, more);
    };
    const Ran dry = import({"--dry-run"});
    CHECK_MESSAGE(contains(dry.out, engine.isEmbedded() ? "\"state\":\"42501\"" : "25006"),
                  dry.out);
    CHECK(company.ask("SELECT count(*) FROM BankMaster WHERE BankCode = 'B'") == "0");
  }
}

}  // namespace
}  // namespace velk
