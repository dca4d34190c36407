#include "platform/odbc/mariadb_dialect.h"

#include <algorithm>
#include <array>

#include "platform/odbc/system_statements.h"

namespace velk {
namespace {

// The names of tables are those of files: their letter case counts.
constexpr auto mariadbStatements = std::to_array<KnownStatement>({
    {shape::openingDate, standard::openingDate},
    {shape::now, "SELECT now()"},
    {shape::customerExists, standard::customerExists},
    {shape::vendorExists, shape::vendorExists},
    {shape::dsType,
     "Select Active From DSType_Master Where DSTypeName = ? and DSTypeValue = ? and DSTypeCtlPos = "
     "1 and OCGtype = (Select flag from tbl_velk_configabstract where ScreenCode = ? and "
     "ScreenName = ?)"},
    {shape::salesmen, standard::salesmen},
});

constexpr auto mariadbErrors = std::to_array<NativeError>({
    {1205, "HYT00"},               // lock wait time-out
    {1969, "HYT00", {}, "HY018"},  // the statement's time limit
    {1317, "HYT00", {}, "HY018"},  // cancelled
    {1927, "08S01", {}, "HY018"},  // the connection was killed
    {2006, "08S01"},               // gone away
    {2013, "08S01"},               // lost during a query
    {1142, "42501", {}, "42000"},  // rights: to a table, a column, a procedure, a database
    {1143, "42501", {}, "42000"},
    {1370, "42501", {}, "42000"},
    {1044, "42501", {}, "42000"},
    {1227, "42501", {}, "42000"},
    {1290, "42501"},  // the server is read-only
});

// By themselves the engine waits 50 seconds for a row, a day for a table, and for ever for all
// else.
std::string timeLimit(const OdbcOptions& options) {
  // To the waits 0 is no time at all.
  constexpr int year = 31'536'000;
  const int seconds = options.commandTimeoutSeconds;
  const std::string wait = std::to_string(seconds <= 0 ? year : std::min(seconds, year));
  return "SET SESSION innodb_lock_wait_timeout = " + wait + ", lock_wait_timeout = " + wait +
         ", max_statement_time = " + wait;
}

// A block that is no transaction: each of its statements commits by itself.
constexpr PairedCallsDialect mariadbPairs{
    .before = "BEGIN NOT ATOMIC ",
    .between = "; SELECT ?; ",
    .after = "; END",
};

}  // namespace

constinit const Dialect mariadbDialect{
    .statements = mariadbStatements,
    .timeLimit = timeLimit,
    .identityQuery = "SELECT concat(@@server_uid, '/', database())",
    .errors = mariadbErrors,
    .callBefore = "CALL ",
    .callAfter = {},
    .pairedCalls = &mariadbPairs,
    .readOnlyStatement = "SET SESSION TRANSACTION READ ONLY",
    .earliestDate = anyDate,
    .transactionCount = "SELECT @@in_transaction",
    // Only those that the user has some right to are listed.
    .canRun =
        "SELECT count(*) FROM information_schema.routines WHERE routine_schema = database() "
        "AND routine_name = ?",
    .endsResultsByError = true,
};

}  // namespace velk
