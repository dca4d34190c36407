// What the runner says of a run in which a server really fails, held against what is on the server.
#include <doctest/doctest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <thread>
#include <tuple>

#include "tests/support/engines.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/support/watched_connection.h"

namespace velk {
namespace {

/// What is different for the tests: references and amounts that make a note or an entry fail.
const std::map<std::string, std::vector<const char*>> faultyCompany{
    {"postgresql",
     {"CREATE TABLE Lane (id integer PRIMARY KEY, n integer)",
      "INSERT INTO Lane SELECT i, 0 FROM generate_series(1, 200) i",
      "CREATE FUNCTION fail_note() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
      " IF NEW.DocReference LIKE '%slow' THEN PERFORM pg_sleep(20); END IF;"
      " IF NEW.DocReference LIKE '%refused' THEN RAISE EXCEPTION 'no such note'; END IF;"
      " IF NEW.DocReference LIKE '%deadlock' THEN UPDATE Lane SET n = 1 WHERE id = 1;"
      " PERFORM pg_sleep(0.2); UPDATE Lane SET n = 1 WHERE id = 2; END IF;"
      " RETURN NEW; END $$",
      "CREATE TRIGGER fail BEFORE INSERT ON CustomerCreditNote FOR EACH ROW EXECUTE FUNCTION "
      "fail_note()",
      "CREATE FUNCTION fail_entry() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
      " IF NEW.OpeningBalance = -0.5 THEN RAISE EXCEPTION 'no such entry'; END IF;"
      " RETURN NEW; END $$",
      "CREATE TRIGGER fail BEFORE INSERT ON CustomerOpeningBalance FOR EACH ROW EXECUTE FUNCTION "
      "fail_entry()",
      "GRANT INSERT ON CustomerCreditNote, Lane TO opnimp_import"}},
    {"mariadb",
     {"CREATE TABLE Lane (id int PRIMARY KEY, n int)",
      "INSERT INTO Lane SELECT seq, 0 FROM seq_1_to_200",
      // In procedures, because the driver crashes behind a trigger with more than one statement.
      "CREATE PROCEDURE fail_note(reference text) BEGIN DECLARE slept int;"
      " IF reference LIKE '%slow' THEN SET slept = SLEEP(20); END IF;"
      " IF reference LIKE '%refused' THEN SIGNAL SQLSTATE '45000'; END IF;"
      " IF reference LIKE '%deadlock' THEN UPDATE Lane SET n = 1 WHERE id = 1;"
      " SET slept = SLEEP(0.2); UPDATE Lane SET n = 1 WHERE id = 2; END IF; END",
      "CREATE TRIGGER fail_note BEFORE INSERT ON CustomerCreditNote FOR EACH ROW CALL "
      "fail_note(NEW.DocReference)",
      "CREATE PROCEDURE fail_entry(amount double) BEGIN IF amount = -0.5 THEN SIGNAL SQLSTATE "
      "'45000';"
      " END IF; END",
      "CREATE TRIGGER fail_entry BEFORE INSERT ON CustomerOpeningBalance FOR EACH ROW CALL "
      "fail_entry(NEW.OpeningBalance)"}}};

/// A procedure for credit notes that answers rows, and raises an error afterwards.
const std::map<std::string, std::vector<const char*>> raisesLate{
    {"postgresql",
     {"CREATE OR REPLACE FUNCTION sp_insert_CustCreditNote(party text, reference text, made "
      "timestamp, amount double precision, balance double precision, narration text) RETURNS TABLE "
      "(document integer) LANGUAGE plpgsql SECURITY DEFINER AS $$ BEGIN document := 1; RETURN NEXT;"
      " INSERT INTO CustomerCreditNote (CustomerID, DocReference, DocumentDate, Amount, Balance, "
      "Narration) VALUES (party, reference, made, amount, balance, '');"
      " RAISE EXCEPTION 'late'; END $$",
      "GRANT EXECUTE ON ROUTINE sp_insert_CustCreditNote, sp_acc_import_customeropeningbalance TO "
      "opnimp_import"}},
    {"mariadb",
     {"DROP PROCEDURE sp_insert_CustCreditNote",
      "CREATE PROCEDURE sp_insert_CustCreditNote(party text, reference text, made "
      "datetime, amount double, balance double, narration text) BEGIN SELECT 1; INSERT INTO "
      "CustomerCreditNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration) "
      "VALUES (party, reference, made, amount, balance, ''); SIGNAL SQLSTATE '45000'; END",
      "GRANT EXECUTE ON PROCEDURE sp_insert_CustCreditNote TO opnimp_import",
      "GRANT EXECUTE ON PROCEDURE sp_acc_import_customeropeningbalance TO opnimp_import"}}};

/// One that keeps what it did before it raises: on PostgreSQL with the caller's rights only.
const std::map<std::string, std::vector<const char*>> commitsWithin{
    {"postgresql",
     {"DROP FUNCTION sp_insert_CustCreditNote",
      "CREATE PROCEDURE sp_insert_CustCreditNote(party text, reference text, made timestamp, "
      "amount double precision, balance double precision, narration text) LANGUAGE plpgsql AS $$ "
      "BEGIN INSERT INTO CustomerCreditNote (CustomerID, DocReference, DocumentDate, Amount, "
      "Balance, Narration) VALUES (party, reference, made, amount, balance, ''); COMMIT;"
      " RAISE EXCEPTION 'behind it'; END $$"}},
    {"mariadb", {}}};

/// One that begins a transaction and does not end it, where procedures can.
const std::map<std::string, std::vector<const char*>> leavesTransaction{
    {"postgresql", {}},
    {"mariadb",
     {"DROP PROCEDURE sp_insert_CustCreditNote",
      "CREATE PROCEDURE sp_insert_CustCreditNote(party text, reference text, made datetime, amount "
      "double, balance double, narration text) BEGIN START TRANSACTION; INSERT INTO "
      "CustomerCreditNote (CustomerID, DocReference, DocumentDate, Amount, Balance, Narration) "
      "VALUES (party, reference, made, amount, balance, ''); END",
      "GRANT EXECUTE ON PROCEDURE sp_insert_CustCreditNote TO opnimp_import"}}};

/// The same, with an entry that takes the whole of a transaction back and says nothing of it.
const std::map<std::string, std::vector<const char*>> takesLeftBack{
    {"postgresql", {}},
    {"mariadb",
     {"DROP PROCEDURE sp_acc_import_customeropeningbalance",
      "CREATE PROCEDURE sp_acc_import_customeropeningbalance(party text, amount double) BEGIN "
      "DECLARE EXIT HANDLER FOR SQLEXCEPTION ROLLBACK; IF amount = -20 THEN SIGNAL SQLSTATE '45000'"
      "; END IF; INSERT INTO CustomerOpeningBalance (CustomerID, OpeningBalance) VALUES (party, "
      "amount) ON DUPLICATE KEY UPDATE OpeningBalance = OpeningBalance + amount; END",
      "GRANT EXECUTE ON PROCEDURE sp_acc_import_customeropeningbalance TO opnimp_import"}}};

struct ServerWorld : RunnerWorld {
  explicit ServerWorld(const TestEngine& on) : engine(on), company(on, folder.path("")) {
    change(faultyCompany);
    surroundings.openDatabase = [this, open = surroundings.openDatabase](
                                    const std::string& string, const OdbcOptions& options) {
      return std::make_shared<WatchedConnection>(open(string, options), [this](int call) {
        if (before) before(call);
      });
    };
  }
  const TestEngine& engine;
  EngineCompany company;
  WatchedConnection::Before before;
  std::thread beside;  ///< what happens while a call runs

  void change(const std::map<std::string, std::vector<const char*>>& statements) {
    for (const char* statement : statements.at(engine.name)) {
      company.connection()->Execute(statement);
    }
  }
  void server(const std::string& command, const char* more = "") {
    const std::string line = std::string(OPNIMP_SOURCE_DIR "/scripts/test-servers ") + command +
                             " " + std::getenv("OPNIMP_TEST_SERVERS") + " " + engine.name + " " +
                             more;
    REQUIRE(std::system(line.c_str()) == 0);
  }
  void restart() {
    server("run");
    company.reconnect();
  }
  double entry(const char* customer) {
    return std::stod(company.ask(std::string("SELECT coalesce(sum(OpeningBalance), 0) FROM "
                                             "CustomerOpeningBalance WHERE CustomerID = '") +
                                 customer + "'"));
  }
};

using World = ServerWorld;

struct Scenario {
  const char* name;
  const char* second;  // the reference of the second record ends so
  const char* amount;  // of it
  void (*before)(World& world, int call);
  const char* outcomes;   // on PostgreSQL
  const char* otherwise;  // on MariaDB
  int status;
  bool ends = false;  // the server
};

void later(World& world, std::function<void()> action) {
  world.beside = std::thread([action = std::move(action)] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    action();
  });
}

/// A session in a process of its own, as the driver manager lets one session of a process wait at a
/// time. It holds what the first statement locks when this returns.
void rival(World& world, const std::string& first, const std::string& second) {
  const auto setting = [&](const std::string& name) {
    const std::string& all = world.engine.connectionString;
    const std::size_t start = all.find(name + "=") + name.size() + 1;
    return all.substr(start, all.find(';', start) - start);
  };
  const bool postgres = std::string_view(world.engine.name) == "postgresql";
  const std::string mark = world.folder.path("rival");
  world.folder.write("rival.sql", "BEGIN;\n" + first + ";\n\\! touch " + mark + "\nSELECT " +
                                      (postgres ? "pg_sleep" : "sleep") + "(0.5);\n" + second +
                                      ";\nROLLBACK;\n");
  const std::string shell =
      postgres ? "PGPASSWORD=" + setting("PWD") + " psql -q -h 127.0.0.1 -U postgres -d company -p "
               : "mariadb --no-defaults -h 127.0.0.1 -u admin --password=" + setting("PWD") +
                     " company -P ";
  const std::string command =
      shell + setting("Port") + " <" + world.folder.path("rival.sql") + " >/dev/null 2>&1";
  world.beside = std::thread([command] { std::ignore = std::system(command.c_str()); });
  for (int i = 0; i < 500 && !world.folder.has("rival"); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

/// Another session that holds what the statements lock until the run is over.
std::shared_ptr<OwnConnection> holder;
void hold(World& world, std::initializer_list<const char*> statements) {
  world.company.reconnect();
  holder = world.company.connection();
  holder->beginTransaction();
  for (const char* statement : statements) holder->Execute(statement);
  world.company.reconnect();
}

void onCall(World& world, int call, int wanted, void (*action)(World&)) {
  if (call == wanted) action(world);
}

const Scenario scenarios[] = {
    {"none", "", "-20", [](World&, int) {}, "posted posted posted", "posted posted posted", 0},
    {"trigger", "refused", "-20", [](World&, int) {}, "posted partial posted",
     "posted partial posted", 1},
    {"both-refused", "refused", "-0.5", [](World&, int) {}, "posted failed posted",
     "posted unknown posted", 1},
    {"entry-refused", "", "-0.5", [](World&, int) {}, "posted partial posted",
     "posted partial posted", 1},
    {"lock-entry", "", "-20",
     [](World& world, int call) {
       onCall(world, call, 4, [](World& w) {
         hold(w, {"UPDATE CustomerOpeningBalance SET OpeningBalance = OpeningBalance"});
       });
     },
     "posted partial not-reached", "posted partial not-reached", 5},
    {"lock-note", "", "-20",
     [](World& world, int call) {
       onCall(world, call, 3, [](World& w) {
         hold(w,
              {std::string_view(w.engine.name) == "mariadb" ? "LOCK TABLES CustomerCreditNote WRITE"
                                                            : "LOCK TABLE CustomerCreditNote"});
       });
     },
     "posted failed not-reached", "posted unknown not-reached", 5},
    {"deadlock", "deadlock", "-20",
     [](World& world, int call) {
       if (call == 3) {
         rival(world, "UPDATE Lane SET n = 2 WHERE id > 1", "UPDATE Lane SET n = 2 WHERE id = 1");
       }
     },
     "posted partial posted", "posted partial posted", 1},
    {"killed-inside", "slow", "-20",
     [](World& world, int call) {
       if (call == 3) later(world, [&world] { world.server("halt", "KILL"); });
     },
     "posted unknown not-reached", "posted unknown not-reached", 5, true},
    {"restarted", "", "-20",
     [](World& world, int call) {
       if (call != 5) return;
       world.server("halt", "KILL");
       world.server("run");
     },
     "posted posted unknown", "posted posted unknown", 5},
    {"revoked", "", "-20",
     [](World& world, int call) {
       if (call != 3) return;
       for (const char* procedure :
            {"sp_insert_CustCreditNote", "sp_acc_import_customeropeningbalance"}) {
         const bool routine = std::string_view(world.engine.name) == "postgresql";
         world.company.connection()->Execute(std::string("REVOKE EXECUTE ON ") +
                                             (routine ? "ROUTINE " : "PROCEDURE ") + procedure +
                                             " FROM opnimp_import");
       }
     },
     "posted failed partial", "posted failed partial", 1},
    {"late", "", "-20",
     [](World& world, int call) {
       if (call == 1) world.change(raisesLate);
     },
     "posted partial posted", "posted partial posted", 1},
    {"commits", "", "-0.5",
     [](World& world, int call) {
       if (call == 1) world.change(commitsWithin);
     },
     "posted unknown posted", "posted partial posted", 1},
    {"left-open", "", "-20",
     [](World& world, int call) {
       if (call == 1) world.change(leavesTransaction);
     },
     "posted partial posted", "posted unknown not-reached", 1},
    {"left-and-back", "", "-20",
     [](World& world, int call) {
       if (call != 1) return;
       world.change(leavesTransaction);
       world.change(takesLeftBack);
     },
     "posted partial posted", "posted unknown not-reached", 1},
};

std::string recordOf(const Scenario& scenario, int i) {
  const std::string reference = std::string(scenario.name) + std::to_string(i + 1);
  const std::string amount = i == 1 ? scenario.amount : "10";
  return "C00" + std::to_string(i + 1) + ",A," + reference + (i == 1 ? scenario.second : "") +
         ",," + amount + "," + amount;
}

/// How many notes and how much of an entry the three records brought about.
struct Seen {
  std::string notes[3];
  double entries[3];
};
Seen look(World& world, const Scenario& scenario) {
  Seen seen;
  for (int i = 0; i < 3; ++i) {
    const std::string start = std::string(scenario.name) + std::to_string(i + 1);
    seen.notes[i] = world.company.ask(
        "SELECT (SELECT count(*) FROM CustomerDebitNote WHERE "
        "DocReference LIKE '" +
        start +
        "%') + (SELECT count(*) FROM "
        "CustomerCreditNote WHERE DocReference LIKE '" +
        start + "%')");
    seen.entries[i] = world.entry(("C00" + std::to_string(i + 1)).c_str());
  }
  return seen;
}

void checkTruth(const Json& report, const Scenario& scenario, const Seen& before,
                const Seen& after) {
  for (int i = 0; i < 3; ++i) {
    const std::string outcome = report.at("records[" + std::to_string(i) + "].outcome");
    CAPTURE(i);
    CAPTURE(outcome);
    const double amount = i == 1 ? std::stod(scenario.amount) : 10;
    const double entered = after.entries[i] - before.entries[i];
    if (outcome == "posted") {
      CHECK(after.notes[i] == "1");
      CHECK(entered == doctest::Approx(amount));
    } else if (outcome == "failed" || outcome == "not-reached") {
      CHECK(after.notes[i] == "0");
      CHECK(entered == doctest::Approx(0));
    }
  }
}

void play(World& world, const Scenario& scenario, const std::vector<std::string>& how) {
  const Seen before = look(world, scenario);
  world.before = [&](int call) { scenario.before(world, call); };
  const std::string file = world.folder.write(
      std::string(scenario.name) + ".csv",
      crlf({openingTitles, recordOf(scenario, 0), recordOf(scenario, 1), recordOf(scenario, 2)}));
  const std::string rejects = world.folder.path(std::string(scenario.name) + ".rejects.csv");
  const std::vector<std::string> options{
      "--json",   "--wait", "2", "--accept", "all", "--database", world.company.database(),
      "--rejects"};
  const auto import = [&](std::vector<std::string> more) {
    more.insert(more.begin(), options.begin(), options.end());
    more.insert(more.end(), how.begin(), how.end());
    return world.import(file, more);
  };
  const auto start = std::chrono::steady_clock::now();
  const Ran ran = import({rejects});
  CHECK(std::chrono::steady_clock::now() - start < std::chrono::seconds(8));
  if (world.beside.joinable()) world.beside.join();
  holder.reset();
  if (scenario.ends) world.restart();
  if (std::string_view(scenario.name) == "restarted") world.company.reconnect();
  const Json report(ran.out);
  const bool first = std::string_view(world.engine.name) == "postgresql";
  CHECK_MESSAGE(report.outcomes() == std::string(first ? scenario.outcomes : scenario.otherwise),
                ran.out);
  CHECK(ran.status == (contains(report.outcomes(), "not-reached") ? 5 : scenario.status));
  CHECK_MESSAGE(report.at("account.addsUp") == "true", ran.out);
  const Seen after = look(world, scenario);
  checkTruth(report, scenario, before, after);
  CHECK_FALSE(contains(ran.out + ran.err + world.folder.read("Error.log"), "change-me"));
  if (!contains(report.outcomes(), "not-reached")) return;
  // Nothing twice: what was posted stays, what is in doubt is set apart, the rest is posted.
  world.before = nullptr;
  const Ran resumed = import({rejects + "2", "--resume"});
  CHECK_MESSAGE(resumed.status <= 1, resumed.out);
  const Seen end = look(world, scenario);
  for (int i = 0; i < 3; ++i) CHECK((end.notes[i] == "1" || end.notes[i] == after.notes[i]));
}

void playAll(const TestEngine& engine, const std::vector<std::string>& how, bool mayWait) {
  ServerWorld world(engine);
  for (const Scenario& scenario : scenarios) {
    if (scenario.status == 5 && !mayWait) continue;
    CAPTURE(std::string(scenario.name));
    play(world, scenario, how);
  }
}

TEST_CASE("server faults: only what is known is said, and it is true") {
  for (const TestEngine& engine : testEngines()) {
    if (!faultyCompany.contains(engine.name)) continue;
    SUBCASE(engine.name) {
      playAll(engine, {}, true);
      // One by one it is the same; what waits or ends a server only in the long tests.
      playAll(engine, {"--one-by-one"}, std::getenv("OPNIMP_LONG") != nullptr);
    }
  }
}

TEST_CASE("server faults: a transaction that a note leaves open keeps its entry from being sent") {
  for (const TestEngine& engine : testEngines()) {
    if (std::string_view(engine.name) != "mariadb") continue;
    ServerWorld world(engine);
    // Behind the records whose calls are asked for such a transaction in any case.
    world.before = [&](int call) {
      if (call != 5) return;
      world.change(leavesTransaction);
      world.change(takesLeftBack);
    };
    const double before = world.entry("C003");
    const std::string file =
        world.folder.write("left.csv", crlf({openingTitles, "C001,A,,,10,10", "C002,A,,,10,10",
                                             "C003,A,L3,,-20,-20", "C001,A,,,10,10"}));
    const Ran ran =
        world.import(file, {"--json", "--accept", "all", "--database", world.company.database()});
    CHECK_MESSAGE(Json(ran.out).outcomes() == "posted posted unknown not-reached", ran.out);
    CHECK(contains(ran.out, "left a transaction open"));
    CHECK(world.entry("C003") == before);
    CHECK(world.company.ask("SELECT count(*) FROM CustomerCreditNote WHERE DocReference = 'L3'") ==
          "0");
  }
}

}  // namespace
}  // namespace velk
