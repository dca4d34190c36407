// Imports into a server that ends, whose standby takes over.
#include <arpa/inet.h>
#include <doctest/doctest.h>
#include <sys/socket.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <set>
#include <thread>

#include "tests/support/failing_hosts.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

/// What the standby has when it takes over.
enum class Follows { AllOfIt, TwoRecordsLess, WaitedFor };

void resetSettings(const TestEngine& engine) {
  const auto administrator = openOdbc(engine.connectionString);
  administrator->Execute("ALTER SYSTEM RESET ALL");
  administrator->Execute("SELECT pg_reload_conf()");
}

/// Commits wait from now on until the standby has them.
void waitForStandby(OwnConnection& primary) {
  primary.Execute("ALTER SYSTEM SET synchronous_standby_names = '*'");
  primary.Execute("SELECT pg_reload_conf()");
  while (ask(primary, "SELECT count(*) FROM pg_stat_replication WHERE sync_state = 'sync'") !=
         "1") {
  }
}

void takeOver(const TestEngine& engine, Follows follows) {
  FailingHosts world(std::getenv("OPNIMP_TEST_SERVERS"));
  const EngineCompany company(engine, "");
  world.server("add", "standby");
  if (follows == Follows::WaitedFor) waitForStandby(*company.connection());
  std::string standby;
  std::ifstream file(world.servers + "/standby.odbc");
  std::getline(file, standby);
  standby = with(standby, {"Database=company"});
  world.hosts = {company.database(), with(standby, {"UID=opnimp_import", "PWD=change-me"})};
  world.before = [&](int call) {
    if (follows == Follows::TwoRecordsLess && call == 13) {
      const auto administrator = openOdbc(standby);
      administrator->Execute("ALTER SYSTEM SET primary_conninfo = ''");
      administrator->Execute("SELECT pg_reload_conf()");
      while (ask(*administrator, "SELECT count(*) FROM pg_stat_wal_receiver") != "0") {
      }
    }
    if (call != 17) return;
    // Else what was confirmed last may not have come there.
    const auto behind =
        "SELECT count(*) FROM pg_stat_replication WHERE replay_lsn < "
        "pg_current_wal_lsn()";
    while (follows == Follows::AllOfIt && ask(*company.connection(), behind) != "0") {
    }
    world.server("halt", "postgresql", "KILL");
    world.server("promote", "standby");
  };
  const Json report = world.importChecked("taken", 12, standby);
  if (follows != Follows::TwoRecordsLess) {
    CHECK(report.at("records[7].outcome") == "unknown");
    CHECK(report.at("hostChanges[0].record") == "9");
    CHECK_FALSE(contains(report.at("hostChanges[0].found"), "are not there"));
  } else {
    CHECK(contains(report.at("hostChanges[0].found"),
                   "2 records that the lost server had confirmed are not there"));
    CHECK(report.at("records[5].outcome") == "unknown");
    CHECK(report.at("hostChanges[0].record") == "7");
  }
  world.server("remove", "standby");
  world.server("run", "postgresql", "-c fsync=off");
  resetSettings(engine);  // without the standby, commits would wait for ever
}

/// A server that confirms changes before they are on its disk loses the last ones when it is ended.
TEST_CASE("standby: what a server lost of its own is found and posted again") {
  for (const TestEngine& engine : testEngines()) {
    const std::string name = engine.name;
    if (name != "postgresql" && name != "mariadb") continue;
    CAPTURE(name);
    const bool isPostgresql = name == "postgresql";
    FailingHosts world(std::getenv("OPNIMP_TEST_SERVERS"));
    const EngineCompany company(engine, "");
    world.hosts = {company.database(), company.database()};
    const auto administrator = openOdbc(engine.connectionString);
    for (const char* setting :
         isPostgresql
             ? std::array{"ALTER SYSTEM SET synchronous_commit = off",
                          "ALTER SYSTEM SET wal_writer_delay = '10s'", "SELECT pg_reload_conf()"}
             : std::array{"SET GLOBAL innodb_flush_log_at_timeout = 60",
                          "SET GLOBAL innodb_flush_log_at_trx_commit = 0", "FLUSH LOGS"}) {
      administrator->Execute(setting);
    }
    world.before = [&](int call) {
      if (call != 17) return;
      world.server("halt", name, "KILL");
      world.server("run", name, isPostgresql ? "-c fsync=off" : "");
    };
    const Json report =
        world.importChecked("own_" + name, 12, with(engine.connectionString, {"Database=company"}));
    // How much it lost is for the server to say.
    CHECK(contains(report.at("hostChanges[0].found"), "the lost server had confirmed"));
    if (isPostgresql) resetSettings(engine);
  }
}

TEST_CASE("standby: what it lacks is found and posted again; waited for, it lacks nothing") {
  for (const TestEngine& engine : testEngines()) {
    if (std::string_view(engine.name) != "postgresql") continue;
    takeOver(engine, Follows::AllOfIt);
    takeOver(engine, Follows::TwoRecordsLess);
    takeOver(engine, Follows::WaitedFor);
  }
}

void endSessions(OwnConnection& administrator, bool isPostgresql) {
  if (isPostgresql) {
    administrator.Execute(
        "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE usename = 'opnimp_import'");
    return;
  }
  const auto sessions = administrator.Execute(
      "SELECT id FROM information_schema.processlist WHERE user = 'opnimp_import'");
  for (; !sessions->isEOF(); sessions->MoveNext()) {
    administrator.Execute("KILL " + toText(sessions->field(0)));
  }
}

/// A connection that is ended costs the record in hand at most, on the same server.
TEST_CASE("hosts: a server that ends a session") {
  for (const TestEngine& engine : testEngines()) {
    const std::string name = engine.name;
    if (name != "postgresql" && name != "mariadb") continue;
    CAPTURE(name);
    for (const bool oneByOne : {true, false}) {
      CAPTURE(oneByOne);
      FailingHosts world(std::getenv("OPNIMP_TEST_SERVERS"));
      const EngineCompany company(engine, "");
      world.hosts = {company.database(), company.database()};
      world.oneByOne = oneByOne;
      world.before = [&](int call) {
        if (call == 7) endSessions(*company.connection(), name == "postgresql");
      };
      const Json report = world.importChecked(oneByOne ? "ended" : "paired", 12,
                                              with(engine.connectionString, {"Database=company"}));
      CHECK(contains(report.at("hostChanges[0].why"), "lost"));
      if (!oneByOne) continue;  // both calls of the record in hand may be in doubt
      CHECK(report.at("hostChanges[0].record") == "4");
      CHECK_FALSE(contains(report.outcomes(), "unknown"));
    }
  }
}

/// Of this process.
std::set<int> connectionsTo(int port) {
  std::set<int> found;
  for (int file = 3; file < 256; ++file) {
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    if (::getpeername(file, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
        peer.sin_family == AF_INET && ntohs(peer.sin_port) == port) {
      found.insert(file);
    }
  }
  return found;
}

TEST_CASE("hosts: a connection that is cut while the server goes on with its call") {
  for (const TestEngine& engine : testEngines()) {
    const std::string name = engine.name;
    if (name != "postgresql" && name != "mariadb") continue;
    CAPTURE(name);
    FailingHosts world(std::getenv("OPNIMP_TEST_SERVERS"));
    EngineCompany company(engine, "");
    world.hosts = {company.database(), company.database()};
    const auto rowHolder = company.connection();
    company.reconnect();
    const std::string& all = engine.connectionString;
    const int port = std::stoi(all.substr(all.find("Port=") + 5));
    const std::set<int> others = connectionsTo(port);
    std::thread beside;
    world.before = [&](int call) {
      if (call != 7) return;  // the note of record 4
      rowHolder->beginTransaction();
      rowHolder->Execute("SELECT 1 FROM Customer WHERE CustomerID = 'C001' FOR UPDATE");
      beside = std::thread([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        for (const int file : connectionsTo(port)) {
          if (!others.contains(file)) ::shutdown(file, SHUT_RDWR);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(600));
        rowHolder->rollback();
      });
    };
    const Json report =
        world.importChecked("cut_", 6, with(engine.connectionString, {"Database=company"}));
    beside.join();
    CHECK(report.outcomes() == "posted posted posted unknown posted posted");
    CHECK(report.at("hostChanges[0].found") ==
          "such a document is there: the record is left in doubt");
  }
}

TEST_CASE("hosts: a command that changes nothing takes several") {
  for (const TestEngine& engine : testEngines()) {
    const std::string name = engine.name;
    if (name != "postgresql" && name != "mariadb") continue;
    CAPTURE(name);
    FailingHosts world(std::getenv("OPNIMP_TEST_SERVERS"));
    const EngineCompany company(engine, "");
    const std::string file = world.folder.write("in.csv", crlf({openingTitles, good1}));
    const std::string folder = world.folder.path("");
    for (std::vector<std::string> call : std::vector<std::vector<std::string>>{
             {"import", "customer-opening", file, "--app-folder", folder, "--dry-run"},
             {"preview", "customer-opening", file},
             {"export", "salesman", world.folder.path("out.xls"), "--app-folder", folder},
             {"check-database"}}) {
      CAPTURE(call.front());
      call.insert(call.end(), {"--database", company.database(), "--database", company.database()});
      const Ran ran = world.run(call);
      CHECK_MESSAGE(ran.status == 0, (ran.out + ran.err));
    }
  }
}

}  // namespace
}  // namespace velk
