#include "platform/odbc/engines.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "base/text.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/mariadb_dialect.h"
#include "platform/odbc/postgresql_dialect.h"
#include "platform/odbc/sqlite_dialect.h"

namespace velk {

namespace {

// Those from 20000 on are of the driver's library for its network protocol, which reports a lost
// connection so: as a mere warning, or under the general state.
constexpr auto sqlServerErrors = std::to_array<NativeError>({
    {1222, "HYT00"},  // the time to wait for a lock
    {1222, "HYT00", {}, "42000"},
    {20004, "08S01", "Read from the server failed"},
    {20006, "08S01", "Write to the server failed"},
    {20017, "08S01", "Unexpected EOF"},
    {20047, "08S01", "dead"},
});

std::string sqlServerLockLimit(const OdbcOptions& options) {
  const int seconds = options.lockTimeoutSeconds;
  return seconds <= 0 ? "" : "SET LOCK_TIMEOUT " + std::to_string(std::int64_t{seconds} * 1000);
}

}  // namespace

const Dialect& dialectOf(std::string_view engineName) {
  // For every other name, too: its statements are sent as they are.
  static constexpr Dialect sqlServer{.timeLimit = sqlServerLockLimit, .errors = sqlServerErrors};
  static constexpr std::pair<std::string_view, const Dialect*> others[] = {
      {"SQLite", &sqliteDialect}, {"PostgreSQL", &postgresqlDialect}, {"MariaDB", &mariadbDialect}};
  const auto* const found = std::ranges::find_if(
      others, [&](const auto& row) { return equalsIgnoringCase(engineName, row.first); });
  return found == std::end(others) ? sqlServer : *found->second;
}

const Dialect* embeddedDialectIn(std::string_view connectionString) {
  return hasKeyword(connectionString, "driver", "sqlite") ? &sqliteDialect : nullptr;
}

}  // namespace velk
