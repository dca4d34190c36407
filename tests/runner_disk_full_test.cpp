// What the runner says of a run in which a server's disk is full, held against what is on the
// server.
#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <regex>

#include "tests/support/checks.h"
#include "tests/support/engines.h"
#include "tests/support/json_value.h"
#include "tests/support/program.h"
#include "tests/support/runner.h"
#include "tests/support/watched_connection.h"

namespace velk {
namespace {

namespace fs = std::filesystem;

/// A disk of its own, as small as possible, for what a server keeps. Only root can mount one.
class SmallDisk {
 public:
  explicit SmallDisk(const std::string& size) {
    const std::string mount = "mount -t tmpfs -o mode=777,size=" + size + " opnimp " + folder();
    isThere_ = std::system((mount + " 2>/dev/null").c_str()) == 0;
    if (!isThere_) {
      std::cerr << "NOT TESTED: a full disk, as this user cannot mount one of his own\n";
    }
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    // The server may still have files open.
    if (isThere_) CHECK(std::system(("umount -l " + folder()).c_str()) == 0);
  }

  bool isThere() const { return isThere_; }
  std::string folder() const { return folder_.path(""); }
  void fill(std::uintmax_t left) const {
    const std::string ballast = folder_.path("ballast");
    std::ofstream file(ballast, std::ios::binary);
    const std::string page(4096, 'x');
    while (file << page << std::flush) {
    }
    file.close();
    fs::resize_file(ballast, fs::file_size(ballast) - left);
  }
  void empty() const { fs::remove(folder_.path("ballast")); }

 private:
  TemporaryFolder folder_;
  bool isThere_ = false;
};

/// Puts the tables of customers' debit notes and opening balances there.
void moveTables(const EngineCompany& company, const TestEngine& engine, const SmallDisk& disk) {
  OwnConnection& connection = *company.connection();
  if (std::string_view(engine.name) == "postgresql") {
    // Only its owner's folder does for the server, which is not root.
    const std::string place = disk.folder() + "tables";
    fs::create_directory(place);
    REQUIRE(std::system(("chown nobody " + place).c_str()) == 0);
    connection.Execute("CREATE TABLESPACE small LOCATION '" + place + "'");
    for (const std::string table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
      connection.Execute("ALTER TABLE " + table + " SET TABLESPACE small");
    }
    return;
  }
  for (const std::string table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
    const std::string made = toText(connection.Execute("SHOW CREATE TABLE " + table)->field(1));
    connection.Execute("DROP TABLE " + table);
    connection.Execute(made + " DATA DIRECTORY='" + disk.folder() + "'");
  }
}

std::string debitNotes(int count) {
  std::string lines = std::string(openingTitles) + "\r\n";
  for (int i = 1; i <= count; ++i) {
    lines += "C001,A,disk full " + std::to_string(i) + ",03/03/2008,1.00,1.00\r\n";
  }
  return lines;
}

/// While it is still there: a server asks for its files for as long as it knows the tables.
void dropTables(const EngineCompany& company, const TestEngine& engine) {
  for (const std::string table : {"CustomerDebitNote", "CustomerOpeningBalance"}) {
    company.connection()->Execute("DROP TABLE " + table);
  }
  if (std::string_view(engine.name) == "postgresql") {
    company.connection()->Execute("DROP TABLESPACE small");
  }
}

/// Holds what was said of the records against what is there.
void checkTold(const Json& report, const EngineCompany& company, double records) {
  const auto count = [&](const std::string& outcome) {
    return std::stod(report.at("account.outcomes." + outcome + ".count"));
  };
  const double doubtful = count("partial") + count("unknown");
  CHECK(report.at("account.addsUp") == "true");
  CHECK(count("posted") > 0);
  CHECK(doubtful > 0);
  CHECK(count("posted") + doubtful + count("failed") == records);
  // Each record is of 1.00, so that the balance counts the entries.
  for (const char* made :
       {"count(*) FROM CustomerDebitNote", "sum(OpeningBalance) FROM CustomerOpeningBalance"}) {
    const double there = std::stod(company.ask(std::string("SELECT ") + made));
    CHECK(there >= count("posted"));
    CHECK(there <= count("posted") + doubtful);
  }
  CHECK(company.ask("SELECT count(*) - count(DISTINCT DocReference) FROM CustomerDebitNote") ==
        "0");
}

TEST_CASE("disk full: every record has one outcome, and it is true") {
  for (const TestEngine& engine : testEngines()) {
    const std::string name = engine.name;
    if (name != "postgresql" && name != "mariadb") continue;
    CAPTURE(name);
    RunnerWorld world;
    const SmallDisk disk("2m");
    if (!disk.isThere()) return;
    const EngineCompany company(engine, {});
    moveTables(company, engine, disk);
    disk.fill(std::uintmax_t{16} * 1024);
    const auto import = [&](const std::string& file) {
      return world.import(file, {"--json", "--database", company.database()});
    };
    constexpr int records = 400;
    const Ran ran = import(world.folder.write("in.csv", debitNotes(records)));
    CHECK(ran.status == 1);
    checkTold(Json(ran.out), company, records);
    // With room again, the same server goes on.
    disk.empty();
    CHECK(import(world.folder.write("more.csv", crlf({openingTitles, good1}))).status == 0);
    dropTables(company, engine);
  }
}

TEST_CASE("disk full: under an embedded database the run ends, and is taken up with room again") {
  const SmallDisk disk("8m");
  if (!disk.isThere()) return;
  RunnerWorld world;
  const std::string database = disk.folder() + "company.db";
  fs::copy_file(world.database(), database);
  disk.fill(std::uintmax_t{64} * 1024);
  const std::string file = world.folder.write("in.csv", debitNotes(400));
  const Ran ran = world.import(file, {"--json", "--database", database});
  CHECK(ran.status == 5);
  const std::regex expected("posted( posted)* (failed|partial)( not-reached)+");
  CHECK_MESSAGE(std::regex_match(Json(ran.out).outcomes(), expected), ran.out);
  CHECK(contains(Json(ran.out).at("brokeOff"), "can take nothing more"));
  disk.empty();
  CHECK(world
            .import(file,
                    {"--resume", "--database", database, "--rejects", world.folder.path("s.csv")})
            .status <= 1);
  const auto there = openOdbc(embeddedConnectionString(database))
                         ->Execute(
                             "SELECT count(DISTINCT DocReference), count(*) FROM "
                             "CustomerDebitNote");
  CHECK(there->field(0) == there->field(1));
  CHECK(toDouble(there->field(0)) >= 399);
}

void run(const std::string& command) {
  CAPTURE(command);
  REQUIRE(std::system(command.c_str()) == 0);
}

/// A server whose log is on a disk of its own while this lives.
class LoggedApart {
 public:
  LoggedApart(const TestEngine& engine, const SmallDisk& disk)
      : engine_(engine.name), isPostgresql_(engine_ == "postgresql") {
    halt();
    if (isPostgresql_) {
      std::ifstream(servers_ + "/place") >> folder_;
      folder_ += "/postgresql/pg_wal";
      // The disk goes before the folder does.
      run("cp -a " + folder_ + " " + disk.folder() + " && mv " + folder_ + " " + folder_ +
          ".aside && ln -s " + disk.folder() + "pg_wal " + folder_);
      start_ = "-c fsync=off";
    } else {
      start_ = "--log-bin=" + disk.folder() + "binlog";
    }
    start();
  }
  LoggedApart(const LoggedApart&) = delete;
  LoggedApart& operator=(const LoggedApart&) = delete;
  ~LoggedApart() {
    halt();
    if (isPostgresql_) {
      run("cp -a " + folder_ + "/. " + folder_ + ".aside && rm " + folder_ + " && mv " + folder_ +
          ".aside " + folder_);
    }
    start_ = isPostgresql_ ? start_ : "";
    start();
  }

  void halt() const { server("halt", isPostgresql_ ? "INT" : "TERM"); }
  void start() const { server("run", start_); }

 private:
  void server(const std::string& command, const std::string& more) const {
    run(OPNIMP_SOURCE_DIR "/scripts/test-servers " + command + " " + servers_ + " " + engine_ +
        " " + more);
  }

  const std::string servers_ = std::getenv("OPNIMP_TEST_SERVERS");
  const std::string engine_;
  const bool isPostgresql_;
  std::string folder_;
  std::string start_;
};

/// Writes to the log until its next file finds no room, which ends the server.
void endLog(const EngineCompany& company) {
  const auto write = [&] {
    for (int files = 0; files < 10; ++files) {
      company.ask("SELECT pg_logical_emit_message(true, 'a', 'b')");
      company.ask("SELECT pg_switch_wal()");
    }
  };
  CHECK_FALSE(trapErrors(write, [](const RuntimeError&) {}));
}

/// One server ends then, the other one waits for room for as long as a statement may run.
TEST_CASE("disk full: under the server's log, what is in doubt is said, and the rest taken up") {
  for (const TestEngine& engine : testEngines()) {
    const std::string name = engine.name;
    if (name != "postgresql" && (name != "mariadb" || !triesAll())) continue;
    CAPTURE(name);
    constexpr int records = 40;
    const SmallDisk disk(name == "postgresql" ? "100m" : "2m");
    if (!disk.isThere()) return;
    RunnerWorld world;
    EngineCompany company(engine, {});
    const LoggedApart logged(engine, disk);
    company.reconnect();
    world.surroundings.openDatabase = [&, open = world.surroundings.openDatabase](
                                          const std::string& string, const OdbcOptions& options) {
      return std::make_shared<WatchedConnection>(open(string, options), [&](int call) {
        if (call != 5) return;
        disk.fill(0);
        if (name == "postgresql") endLog(company);
      });
    };
    const std::string file = world.folder.write("in.csv", debitNotes(records));
    const std::vector<std::string> options{"--json",     "--wait",          "1", "--rejects", "",
                                           "--database", company.database()};
    const auto import = [&](const std::string& rejects, std::vector<std::string> more) {
      more.insert(more.end(), options.begin(), options.end());
      *std::ranges::find(more, "") = world.folder.path(rejects);
      return world.import(file, more);
    };
    const Ran ran = import("r.csv", {});
    CHECK_MESSAGE(ran.status == 5, (ran.out + ran.err));
    const Json report(ran.out);
    const std::regex expected("posted posted( posted)* (unknown|partial)( not-reached)+");
    CHECK_MESSAGE(std::regex_match(report.outcomes(), expected), report.outcomes());
    disk.empty();
    if (name == "postgresql") logged.start();
    company.reconnect();
    // Each once; with the one in doubt, or without.
    const auto checkNotes = [&](int count) {
      const int there = std::stoi(company.ask("SELECT count(*) FROM CustomerDebitNote"));
      CHECK((there == count || there == count + 1));
      CHECK(company.ask("SELECT count(DISTINCT DocReference) FROM CustomerDebitNote") ==
            std::to_string(there));
    };
    checkNotes(std::stoi(report.at("account.outcomes.posted.count")));
    world.surroundings.openDatabase = realSurroundings().openDatabase;
    const Ran resumed = import("s.csv", {"--resume"});
    CHECK_MESSAGE(resumed.status == 1, resumed.out);
    checkNotes(records - 1);
  }
}

}  // namespace
}  // namespace velk
