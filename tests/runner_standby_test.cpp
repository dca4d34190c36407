// Imports into a server that ends, whose standby takes over.
#include <doctest/doctest.h>

#include <cstdlib>
#include <fstream>

#include "tests/support/failing_hosts.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

/// What the standby has when it takes over.
enum class Follows { AllOfIt, TwoRecordsLess };

void takeOver(const TestEngine& engine, Follows follows, bool hasLookup) {
  FailingHosts world(std::getenv("OPNIMP_TEST_SERVERS"));
  const EngineCompany company(engine, "");
  if (!hasLookup) company.connection()->Execute("DROP FUNCTION opnimp_count_documents");
  world.server("add", "standby");
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
  if (!hasLookup) {
    CHECK(contains(report.at("brokeOff"), "may lack what the lost one confirmed last"));
  } else if (follows == Follows::AllOfIt) {
    CHECK(report.at("records[7].outcome") == "unknown");
    CHECK(report.at("hostChanges[0].record") == "9");
  } else {
    CHECK(contains(report.at("hostChanges[0].found"),
                   "2 records that the lost server had confirmed are not there"));
    CHECK(report.at("records[5].outcome") == "unknown");
    CHECK(report.at("hostChanges[0].record") == "7");
  }
  world.server("remove", "standby");
  world.server("run", "postgresql", "-c fsync=off");
}

TEST_CASE("standby: what it lacks is found and posted again, or said") {
  for (const TestEngine& engine : testEngines()) {
    if (std::string_view(engine.name) != "postgresql") continue;
    takeOver(engine, Follows::AllOfIt, true);
    takeOver(engine, Follows::TwoRecordsLess, true);
    takeOver(engine, Follows::AllOfIt, false);
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
