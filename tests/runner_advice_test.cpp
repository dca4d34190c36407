// What to change when a database does not open, in the words of each system.
#include <doctest/doctest.h>

#include "apps/opnimp/run/connection_advice.h"
#include "platform/odbc/cannot_connect.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

TEST_CASE("connections: what a driver says, and what to change") {
  const std::string server = "connection to server at \"127.0.0.1\", port 5432 failed: ";
  const struct {
    const char* string;
    Diagnostic said;
    std::string_view advice, onWindows = advice;
  } rows[] = {
      {"", {"IM003", 0, "could not be loaded"}, "`odbcinst -q -d`", "`Get-OdbcDriver`"},
      {"", {"IM002", 0, "no default driver"}, "`odbcinst -q -d`", "`Get-OdbcDriver`"},
      {"", {"08001", 101, "root certificate"}, "~/.postgresql", "%APPDATA%\\postgresql\\root.crt"},
      {"", {"08001", 101, server + "FATAL:  Datenbank »x« existiert nicht"}, "The server answers"},
      {"", {"08001", 101, server + "ВАЖНО:  роль \"x\" не существует"}, "The server answers"},
      {"", {"08001", 101, server + "Connection refused"}, "Correct Server= and Port="},
      {"", {"08001", 101, server + "timeout expired"}, "Correct Server= and Port="},
      {"", {"28000", 1045, "Access denied"}, "add FORCETLS=1"},
      {"FORCETLS=1", {"28000", 1045, "Access denied"}, "Correct the user"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.said.message);
    const auto advice = connectionAdvice(std::string("Driver=x;") + row.string, {row.said});
    CHECK_MESSAGE(contains(advice, isWindows ? row.onWindows : row.advice), advice);
    CHECK(contains(advice, "FORCETLS") == contains(row.advice, "FORCETLS"));
  }
  const auto source = connectionAdvice("DSN=x", {{"IM002", 0, "no default driver"}});
  CHECK_MESSAGE(contains(source, isWindows ? "`Get-OdbcDsn`" : "`odbcinst -q -s`"), source);
}

TEST_CASE("connections: the embedded database without its driver") {
  RunnerWorld world;
  const std::string database = world.database();
  world.surroundings.openDatabase = [](const std::string&,
                                       const OdbcOptions&) -> std::shared_ptr<OwnConnection> {
    throw CannotConnect(RuntimeError(ErrorNumber::ProviderFailure), {{"IM002", 0, "not found"}});
  };
  const Ran ran = world.importLines({openingTitles, good1}, {"--database", database});
  CHECK(ran.status == 4);
  CHECK_MESSAGE(contains(ran.err, "Install SQLite's ODBC driver"), ran.err);
  CHECK(contains(ran.err, isWindows ? "as many bits as this program has" : "libsqliteodbc"));
}

}  // namespace
}  // namespace velk
