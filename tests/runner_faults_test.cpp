// What the runner says of a run in which servers and drivers fail, held against what was done.
#include <doctest/doctest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <thread>

#include "tests/support/runner.h"
#include "tests/support/truth.h"

using namespace velk;

namespace {

constexpr std::string_view openings[] = {good1, good2, good3};

/// Over the failing driver, which does as the settings say.
struct FaultWorld : RunnerWorld {
  std::string ledger() const { return folder.has("ledger") ? folder.read("ledger") : ""; }
  std::string connection(const std::string& settings) const {
    return std::string("Driver=" OPNIMP_FAULTS ";Ledger=") + folder.path("ledger") + ";" + settings;
  }
  Ran importAll(const std::string& settings, std::vector<std::string> more = {"--json"}) {
    more.insert(more.end(),
                {"--database", connection(settings), "--rejects", folder.path("r.csv")});
    return importLines({openingTitles, openings[0], openings[1], openings[2]}, std::move(more));
  }
  Truth truth{folder, {std::begin(openings), std::end(openings)}};
  void checkTruth(const Ran& ran) const { truth.check(Json(ran.out)); }
};

}  // namespace

TEST_CASE("faults: only what is known is said") {
  const struct {
    std::string settings;
    std::string_view outcomes;
    int status;
  } rows[] = {
      {"", "posted posted posted", 0},
      {"Faults=r", "partial posted posted", 1},
      {"Faults=rr", "unknown posted posted", 1},
      {"Faults=aa;State=42000", "unknown posted posted", 1},
      {"Faults=..aa;State=40001", "posted unknown posted", 1},
      {"Faults=..nn;State=42000", "posted unknown posted", 1},
      {"Faults=nn;State=40001", "unknown posted posted", 1},
      {"Faults=nn;State=HY001", "unknown posted posted", 1},
      {"Faults=...n;State=HY001", "posted partial posted", 1},
      {"Faults=l;State=23000", "partial posted posted", 1},
      {"Faults=a;State=HYT00", "unknown not-reached not-reached", 5},
      {"Faults=..n;State=HYT00", "posted unknown not-reached", 5},
      {"Faults=...t", "posted partial not-reached", 5},
      // The procedure, the right, a parameter: missing by the catalogue's answer only.
      {"Faults=bb;State=42000;Catalogue=missing", "failed posted posted", 1},
      {"Faults=bb;State=42000;Catalogue=noright", "failed posted posted", 1},
      {"Faults=bb;State=42000;Catalogue=few", "failed posted posted", 1},
      {"Faults=bb;State=42000;Catalogue=list", "failed posted posted", 1},
      {"Faults=bb;State=42000;Catalogue=none", "unknown posted posted", 1},
      {"Faults=nn;State=42000;Catalogue=missing", "unknown posted posted", 1},
      // What is left behind.
      {"Faults=cc", "unknown posted posted", 1},
      {"Faults=s", "unknown not-reached not-reached", 5},
      {"Faults=..e", "posted unknown not-reached", 5},
      {"Faults=...e", "posted unknown not-reached", 5},
      {"Faults=d;State=42000", "unknown not-reached not-reached", 5},
      {"Faults=..d;State=HY000", "posted unknown not-reached", 5},
      // A transaction that a procedure leaves open, found at once, and at the end.
      {"Faults=o", "unknown not-reached not-reached", 5},
      {"Faults=...o", "posted partial not-reached", 5},
      {"Faults=....o", "unknown unknown unknown", 5},
  };
  for (const auto& row : rows) {
    CAPTURE(row.settings);
    FaultWorld world;
    const Ran ran = world.importAll(row.settings);
    CHECK(Json(ran.out).outcomes() == row.outcomes);
    CHECK(ran.status == row.status);
    world.checkTruth(ran);
  }
}

TEST_CASE("faults: all or nothing") {
  const struct {
    std::string settings;
    std::string_view outcomes;
    int status;
    std::string_view rejects;
  } rows[] = {
      {"", "posted posted posted", 0, ""},
      {"Faults=..r", "taken-back failed taken-back", 1, openings[1]},
      {"Faults=..bb;State=42000;Catalogue=none", "taken-back failed taken-back", 1, openings[1]},
      {"Faults=....l;State=42000", "taken-back taken-back failed", 1, openings[2]},
      {"Faults=..t", "taken-back failed not-reached", 5, openings[1]},
      // The procedure commits: what it posted stays, and all before it.
      {"Faults=..k", "unknown unknown not-reached", 5, ""},
      {"Faults=.....k", "unknown unknown unknown", 5, ""},
      {"Faults=..d;State=42000", "unknown unknown not-reached", 5, ""},
      {"Faults=..s", "unknown unknown not-reached", 5, ""},
      {"Commit=refused", "unknown unknown unknown", 5, ""},
      {"Commit=lost", "unknown unknown unknown", 5, ""},
  };
  for (const auto& row : rows) {
    CAPTURE(row.settings);
    FaultWorld world;
    const Ran ran = world.importAll(row.settings, {"--json", "--all-or-nothing"});
    CHECK(Json(ran.out).outcomes() == row.outcomes);
    CHECK(ran.status == row.status);
    CHECK(world.folder.read("r.csv") ==
          (row.rejects.empty() ? crlf({openingTitles}) : crlf({openingTitles, row.rejects})));
    world.checkTruth(ran);
  }
}

TEST_CASE("faults: a date that the engine cannot hold") {
  FaultWorld world;
  const Ran ran = world.importLines(
      {openingTitles, openings[0], "C002,B,R2,31/12/1752,1,1", "C003,C,R3,01/01/1753,1,1"},
      {"--accept", "all", "--database", world.connection("")});
  CHECK(ran.status == 2);
  CHECK(contains(ran.out + ran.err, "no date before 01/01/1753: line 3 (31/12/1752); correct"));
  CHECK(world.ledger().empty());
}

TEST_CASE("faults: who holds a lock is told as far as the account may see it") {
  FaultWorld world;
  const auto connection = openOdbc(world.connection(""));
  CHECK(connection->lockHolders(connection->session()).names == Texts{"session 52 of user sa"});
  const LockHolders hidden = openOdbc(world.connection("Holders=noright"))->lockHolders("1");
  CHECK(hidden.names.empty());
  CHECK(hidden.missingRight == "VIEW SERVER STATE");
}

TEST_CASE("faults: a dry run says what the catalogue knows") {
  for (const auto& row : {std::pair("Catalogue=", "posted posted posted"),
                          {"Catalogue=missing", "failed failed failed"}}) {
    CAPTURE(row.first);
    FaultWorld world;
    const Ran ran = world.importAll(row.first, {"--json", "--dry-run"});
    CHECK(Json(ran.out).outcomes() == row.second);
    CHECK(world.ledger().empty());
  }
}

TEST_CASE("faults: all or nothing in the embedded database") {
  const auto count = [](RunnerWorld& world) {
    return world.ask("select count(*) from CustomerOpeningBalance");
  };
  RunnerWorld world;
  const Ran good = world.importLines({openingTitles, openings[0]}, {"--all-or-nothing"});
  CHECK(good.status == 0);
  CHECK(count(world) == "1");
  const Ran bad = world.importLines({openingTitles, openings[1], "C999,A,R,,1,1", openings[2]},
                                    {"--all-or-nothing"});
  CHECK(bad.status == 1);
  CHECK(contains(bad.out, "taken back          2"));
  CHECK(contains(bad.out, "Nothing stays posted: all of it was taken back. Correct 1 refused"));
  CHECK(count(world) == "1");
  world.ask(
      "create trigger stop before insert on CustomerOpeningBalance when new.CustomerID = 'C003' "
      "begin select raise(rollback, 'stopped'); end");
  const Ran ended = world.importLines({openingTitles, openings[1], openings[2], openings[0]},
                                      {"--all-or-nothing", "--again", "--json"});
  CHECK(ended.status == 5);
  CHECK(contains(Json(ended.out).at("brokeOff"), "ended the transaction"));
  CHECK(Json(ended.out).outcomes() == "unknown unknown not-reached");
  CHECK(count(world) == "1");
}

TEST_CASE("faults: a procedure runs to its end behind a refused statement") {
  FaultWorld world;
  world.importAll("Faults=..c");
  CHECK(contains(world.ledger(), "sp_insert_CustCreditNote C002 rest\n"));
  CHECK(world.truth.changes(2) == 2);
  CHECK_FALSE(contains(world.folder.read("Error.log"), "does not exist"));
}

TEST_CASE("faults: a database that does not answer is left with an account") {
  const auto self = std::this_thread::get_id();
  const struct {
    const char* fault;
    const char* wait;
    std::string_view why;
  } rows[] = {{"Faults=h", "30", "it was interrupted"},
              {"Faults=H", "30", "it was interrupted"},
              {"Faults=..H", "30", "it was interrupted"},
              {"Faults=..H", "1", "no answer within its time-out of 1 s, and nothing ended it"}};
  for (const auto& row : rows) {
    CAPTURE(row.fault);
    FaultWorld world;
    world.surroundings.answerPatience = std::chrono::milliseconds(50);
    // Only to who waits for the run, so that it does not end between two records.
    world.surroundings.interrupted = [self, never = row.wait[0] == '1'] {
      return !never && std::this_thread::get_id() == self;
    };
    const auto start = std::chrono::steady_clock::now();
    const Ran ran = world.importAll(row.fault, {"--json", "--wait", row.wait});
    CHECK(std::chrono::steady_clock::now() - start < std::chrono::seconds(4));
    CHECK(ran.status == 5);
    CHECK(contains(Json(ran.out).at("brokeOff"), row.why));
    CHECK(contains(Json(ran.out).outcomes(), "unknown not-reached"));
    world.checkTruth(ran);
  }
}

TEST_CASE("faults: a second signal does not cost the account") {
  FaultWorld world;
  const std::string in =
      world.folder.write("in.csv", crlf({openingTitles, openings[0], openings[1], openings[2]}));
  const std::string out = world.folder.path("out.txt");
  const std::string script = "'" OPNIMP_PROGRAM "' import customer-opening '" + in +
                             "' --app-folder '" + world.folder.path("") + "' --journal '" +
                             world.folder.path("journal") + "' --database '" +
                             world.connection("Faults=..H") + "' >'" + out +
                             "' 2>&1 & p=$!; sleep 0.3; kill -TERM $p; sleep 0.3; kill -TERM $p; "
                             "wait $p; test $? = 5";
  CHECK(std::system(script.c_str()) == 0);
  const std::string report = world.folder.read("out.txt");
  CHECK_MESSAGE(contains(report, "The account adds up."), report);
  CHECK(contains(report, "it was interrupted, and the database did not answer any more"));
}

TEST_CASE("faults: a secret stands in no list of processes, and in no core dump") {
  RunnerWorld world;
  world.importLines({openingTitles, good1});
  const auto holder = openOdbc(embeddedConnectionString(world.database()));
  holder->beginTransaction();
  holder->Execute("update Setup set OpeningDate = OpeningDate");
  // While it waits for the lock it is looked at from outside.
  const std::string connection = embeddedConnectionString(world.database()) + ";PWD=hunter2";
  const std::string command =
      "ulimit -c $(ulimit -Hc); XDG_STATE_HOME=" + world.folder.path("") + " OPNIMP_DATABASE='" +
      connection + "' " + OPNIMP_PROGRAM + " import customer-opening " +
      world.folder.write("s.csv", crlf({openingTitles, good2})) + " --wait 4 --app-folder " +
      world.folder.path("") +
      " >/dev/null 2>&1 & sleep 0.7; cat /proc/$!/limits /proc/$!/cmdline; wait";
  FILE* const pipe = ::popen(command.c_str(), "r");
  REQUIRE(pipe != nullptr);
  std::string seen(65536, '\0');
  seen.resize(std::fread(seen.data(), 1, seen.size(), pipe));
  ::pclose(pipe);
  CHECK_MESSAGE(std::regex_search(seen, std::regex("Max core file size +0 +0 ")), seen);
  CHECK(contains(seen, "s.csv"));
  CHECK_FALSE(contains(seen, "hunter2"));
}

TEST_CASE("faults: a call of the embedded database that cannot be undone ends the run") {
  RunnerWorld world;
  world.ask("delete from StoredProcedure where name = 'sp_insert_CustCreditNote'");
  // It takes the whole transaction back, and the call's savepoint with it.
  world.ask(
      "insert into StoredProcedure (name, step, statement, arguments) "
      "select 'sp_insert_CustCreditNote', column1, column2, column3 from (values "
      "(1, 'SELECT ?', '6'), (2, 'INSERT OR ROLLBACK INTO Customer SELECT * FROM Customer', ''))");
  const Ran ran =
      world.importLines({openingTitles, openings[0], openings[1], openings[2]}, {"--json"});
  CHECK(ran.status == 5);
  CHECK(Json(ran.out).outcomes() == "posted unknown not-reached");
  CHECK(world.ask("select count(*) from CustomerOpeningBalance") == "1");
}
