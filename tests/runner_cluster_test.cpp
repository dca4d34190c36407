// Imports into a cluster whose nodes are ended under them, or whose sessions meet.
#include <doctest/doctest.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <thread>
#include <tuple>

#include "tests/support/failing_hosts.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

/// Of three nodes.
struct ClusterWorld : FailingHosts {
  ClusterWorld(const std::string& started, const TestEngine& first, std::vector<std::string> all)
      : FailingHosts(started), nodes(std::move(all)), company(first, "") {
    for (std::string& node : nodes) node = with(node, {"Database=company"});
  }

  std::vector<std::string> nodes;  ///< connection strings of the administrator
  EngineCompany company;

  /// The nodes in their order, from that one on.
  void use(std::size_t first) {
    hosts.clear();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      hosts.push_back(
          with(nodes[(first + i) % nodes.size()], {"UID=opnimp_import", "PWD=change-me"}));
    }
  }
  void kill(std::size_t node) { server("halt", "galera" + std::to_string(node + 1), "KILL"); }
  void start(std::size_t node) { server("run", "galera" + std::to_string(node + 1)); }
};

/// Runs a script in a process of its own.
std::thread beside(const ClusterWorld& world, std::size_t node, const std::string& script) {
  const std::string& all = world.nodes[node];
  const std::size_t port = all.find("Port=") + 5;
  const std::string path = world.folder.path("beside.sql");
  std::ofstream(path) << script;
  const std::string command =
      "mariadb --no-defaults --force -h 127.0.0.1 -u admin --password=opnimp-test company -P " +
      all.substr(port, all.find(';', port) - port) + " <" + path + " >/dev/null 2>&1";
  return std::thread([command] { std::ignore = std::system(command.c_str()); });
}

void killBetween(ClusterWorld& world) {
  struct Case {
    const char* name;
    std::size_t node;
    int call;  // before it the node in use is killed
    const char* outcome;
    const char* record;  // with which the run goes on
  };
  for (const Case& each : {Case{"note", 0, 9, "posted", "5"}, {"entry", 1, 10, "unknown", "6"}}) {
    CAPTURE(each.name);
    world.use(each.node);
    world.before = [&](int call) {
      if (call == each.call) world.kill(each.node);
    };
    const Json report = world.importChecked(each.name, 12, world.nodes[2]);
    CHECK(report.at("records[4].outcome") == each.outcome);
    CHECK(report.at("hostChanges[0].record") == each.record);
    world.start(each.node);
  }
}

void killWithin(ClusterWorld& world, std::size_t node, int milliseconds) {
  CAPTURE(milliseconds);
  world.use(node);
  std::thread killer;
  world.before = [&](int call) {
    // The last calls wait, so that the run is not done before.
    if (call == 70) killer.join();
    if (call != 2) return;
    killer = std::thread([&world, node, milliseconds] {
      std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
      world.kill(node);
    });
  };
  const Json report = world.importChecked("within" + std::to_string(milliseconds) + "x", 40,
                                          world.nodes[(node + 1) % world.nodes.size()]);
  if (killer.joinable()) killer.join();
  CHECK(contains(report.at("hostChanges"), "record"));
  CHECK_FALSE(contains(report.outcomes(), "not-reached"));
  world.start(node);
}

/// A session at another node changes the same balances all the time.
void meet(ClusterWorld& world) {
  const auto administrator = openOdbc(world.nodes[1]);
  for (const char* statement :
       {"ALTER TABLE CustomerOpeningBalance ADD COLUMN Touched int NOT NULL DEFAULT 0",
        "CREATE TABLE Rival (goes int PRIMARY KEY)", "INSERT INTO Rival VALUES (1)"}) {
    administrator->Execute(statement);
  }
  world.use(0);
  std::thread rival =
      beside(world, 1,
             "DELIMITER //\nBEGIN NOT ATOMIC DECLARE CONTINUE HANDLER FOR SQLEXCEPTION"
             " BEGIN END; FOR i IN 1..20000 DO"
             " UPDATE CustomerOpeningBalance SET Touched = Touched + 1;"
             " IF (SELECT goes FROM Rival) = 0 THEN SET @@sql_select_limit = 0;"
             " SIGNAL SQLSTATE '02000'; END IF; DO SLEEP(0.002); END FOR; END //\n");
  const Json report = world.importChecked("met", 40, world.nodes[2]);
  administrator->Execute("UPDATE Rival SET goes = 0");
  rival.join();
  CHECK(contains(report.outcomes(), "posted"));
  CHECK_FALSE(contains(report.outcomes(), "unknown"));
  CHECK(std::stoi(report.at("repeatedCalls")) > 0);
}

/// What a call has committed itself is not made again.
void commitWithin(ClusterWorld& world) {
  const auto administrator = openOdbc(world.nodes[0]);
  for (const char* statement :
       {"DROP PROCEDURE sp_insert_CustDebitNote",
        "CREATE PROCEDURE sp_insert_CustDebitNote(party text, reference text, made datetime, amount"
        " double, balance double, narration text) BEGIN INSERT INTO CustomerDebitNote (CustomerID,"
        " DocReference, DocumentDate, Amount, Balance, Narration) VALUES (party, reference, made,"
        " amount, balance, ''); IF reference LIKE '%kept' THEN COMMIT; END IF;"
        " IF reference <> 'plain' THEN SIGNAL SQLSTATE '40001'; END IF; END",
        "GRANT EXECUTE ON PROCEDURE sp_insert_CustDebitNote TO opnimp_import"}) {
    administrator->Execute(statement);
  }
  world.use(0);
  const std::string file = world.folder.write(
      "commits.csv",
      crlf({openingTitles, "C001,A,plain,,1,1", "C002,A,is kept,,1,1", "C003,A,is met,,1,1"}));
  const Ran ran = world.import(file, {"--json", "--accept", "all", "--database", world.hosts[0]});
  const Json report(ran.out);
  const auto notes = [&](const char* reference) {
    return ask(*administrator, std::string("SELECT count(*) FROM CustomerDebitNote WHERE "
                                           "DocReference = '") +
                                   reference + "'");
  };
  CHECK_MESSAGE(report.outcomes() == "posted partial partial", ran.out);
  CHECK(report.at("records[1].calls[1].result") == "in-doubt");
  CHECK(report.at("records[2].calls[1].result") == "failed");
  CHECK(report.at("repeatedCalls") == "9");
  CHECK(notes("is kept") == "1");
  CHECK(notes("is met") == "0");
}

/// What is left is no majority: it takes nothing any more.
void killMost(ClusterWorld& world) {
  world.use(2);
  world.surroundings.hostPatience = std::chrono::seconds(1);
  world.before = [&](int call) {
    if (call != 5) return;
    world.kill(0);
    world.kill(1);
  };
  const std::string file =
      world.folder.write("most.csv", crlf({openingTitles, "C001,A,plain,,2,1", "C002,A,plain,,2,1",
                                           "C003,A,plain,,2,1", "C003,A,plain,,3,1"}));
  std::vector<std::string> options{"--json", "--accept", "all"};
  for (const std::string& host : world.hosts) {
    options.insert(options.end(), {"--database", host});
  }
  const Ran ran = world.import(file, options);
  CHECK(ran.status == 5);
  const Json report(ran.out);
  CHECK(report.outcomes() == "posted posted unknown not-reached");
  CHECK_MESSAGE(contains(report.at("brokeOff"), "it is not in its cluster now"),
                report.at("brokeOff"));
  CHECK(report.at("account.addsUp") == "true");
}

TEST_CASE("cluster: nothing is lost and nothing posted twice, whichever node ends and when") {
  const char* const folder = std::getenv("OPNIMP_TEST_GALERA");
  std::vector<std::string> nodes;
  std::ifstream lines(std::string(folder == nullptr ? "" : folder) + "/galera.odbc");
  for (std::string line; std::getline(lines, line);) nodes.push_back(line);
  if (nodes.size() != 3) {
    std::cerr << "NOT TESTED ON a cluster: there is none (scripts/setup --servers)\n";
    return;
  }
  const TestEngine first{"mariadb", "varchar", "datetime(3)", ";", false, nodes[0]};
  ClusterWorld world(folder, first, nodes);
  killBetween(world);
  killWithin(world, 2, 25);
  if (std::getenv("OPNIMP_LONG") != nullptr) {
    for (int i = 0; i < 30; ++i) killWithin(world, static_cast<std::size_t>(i) % 3, 5 + 7 * i);
  }
  world.before = nullptr;
  meet(world);
  commitWithin(world);
  killMost(world);
}

}  // namespace
}  // namespace velk
