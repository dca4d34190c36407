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

constexpr auto sqlServerExcessRights = std::to_array<std::string_view>(
    {"SELECT 'to do everything, as a system administrator' WHERE IS_SRVROLEMEMBER('sysadmin') = 1",
     "SELECT 'as a member of ' + name FROM sys.database_principals WHERE type = 'R' AND name IN "
     "('db_owner', 'db_ddladmin', 'db_datawriter', 'db_securityadmin', 'db_accessadmin') AND "
     "IS_MEMBER(name) = 1",
     "SELECT 'to write the table ' + name FROM sys.tables WHERE HAS_PERMS_BY_NAME(QUOTENAME("
     "SCHEMA_NAME(schema_id)) + '.' + QUOTENAME(name), 'OBJECT', 'INSERT') = 1 OR "
     "HAS_PERMS_BY_NAME(QUOTENAME(SCHEMA_NAME(schema_id)) + '.' + QUOTENAME(name), 'OBJECT', "
     "'UPDATE') = 1"});

std::string sqlServerLockLimit(const OdbcOptions& options) {
  if (!options.waitsForLocks) return "SET LOCK_TIMEOUT 0";
  const int seconds = options.lockTimeoutSeconds;
  return seconds <= 0 ? "" : "SET LOCK_TIMEOUT " + std::to_string(std::int64_t{seconds} * 1000);
}

constexpr std::pair<std::string_view, const Dialect*> otherEngines[] = {
    {"SQLite", &sqliteDialect}, {"PostgreSQL", &postgresqlDialect}, {"MariaDB", &mariadbDialect}};

}  // namespace

const Dialect& dialectOf(std::string_view engineName) {
  // For every other name, too: its statements are sent as they are.
  static constexpr Dialect sqlServer{
      .timeLimit = sqlServerLockLimit,
      .errors = sqlServerErrors,
      .encodingQuery =
          "SELECT 'code page ' + CONVERT(varchar(20), COLLATIONPROPERTY(CONVERT("
          "varchar(128), DATABASEPROPERTYEX(DB_NAME(), 'Collation')), 'CodePage'))",
      .noCountQuery = "SELECT CASE WHEN @@OPTIONS & 512 = 0 THEN 'OFF' ELSE 'ON' END",
      .excessRights = sqlServerExcessRights};
  const auto* const found = std::ranges::find_if(
      otherEngines, [&](const auto& row) { return equalsIgnoringCase(engineName, row.first); });
  return found == std::end(otherEngines) ? sqlServer : *found->second;
}

std::vector<std::string_view> engineNames() {
  std::vector<std::string_view> names{"SQL Server"};
  for (const auto& [name, dialect] : otherEngines) names.push_back(name);
  return names;
}

const Dialect* embeddedDialectIn(std::string_view connectionString) {
  return hasKeyword(connectionString, "driver", "sqlite") ? &sqliteDialect : nullptr;
}

}  // namespace velk
