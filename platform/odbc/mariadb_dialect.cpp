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

// The first one knows of rows, and needs a right; the second that there is a lock on a table.
constexpr auto mariadbLockHolders = std::to_array<std::string_view>(
    {"SELECT concat('session ', b.trx_mysql_thread_id, coalesce(concat(' of user ', p.user, ' from "
     "', p.host), ''), ', in a transaction since ', b.trx_started) "
     "FROM information_schema.innodb_trx w "
     "JOIN information_schema.innodb_lock_waits l ON l.requesting_trx_id = w.trx_id "
     "JOIN information_schema.innodb_trx b ON b.trx_id = l.blocking_trx_id "
     "LEFT JOIN information_schema.processlist p ON p.id = b.trx_mysql_thread_id "
     "WHERE w.trx_mysql_thread_id = ?",
     "SELECT concat('a session that the server does not name (', state, ')') "
     "FROM information_schema.processlist WHERE id = ? AND state LIKE 'Waiting for%lock'"});

// What PROCESS is good for stands above.
constexpr auto mariadbExcessRights = std::to_array<std::string_view>(
    {"SELECT concat(lower(privilege_type), ' on all databases') "
     "FROM information_schema.user_privileges WHERE privilege_type NOT IN ('USAGE', 'PROCESS') AND "
     "grantee = concat('''', replace(current_user(), '@', '''@'''), '''')",
     "SELECT concat(lower(privilege_type), ' on the database ', table_schema) "
     "FROM information_schema.schema_privileges WHERE privilege_type NOT IN ('SELECT', 'EXECUTE')",
     "SELECT concat(lower(privilege_type), ' on the table ', table_name) "
     "FROM information_schema.table_privileges WHERE privilege_type <> 'SELECT'"});

constexpr auto mariadbErrors = std::to_array<NativeError>({
    {1205, "HYT00"},               // lock wait time-out
    {1969, "HYT00", {}, "HY018"},  // the statement's time limit
    {1317, "HYT00", {}, "HY018"},  // cancelled
    {3, "HYT00"},                  // it has waited that long for room on a disk, its log's mostly
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
  static constexpr int year = 31'536'000;
  const auto limit = [](int seconds) { return seconds <= 0 ? year : std::min(seconds, year); };
  const int statement = limit(options.commandTimeoutSeconds);
  const std::string wait = std::to_string(
      options.waitsForLocks ? std::min(statement, limit(options.lockTimeoutSeconds)) : 0);
  return "SET SESSION innodb_lock_wait_timeout = " + wait + ", lock_wait_timeout = " + wait +
         ", max_statement_time = " + std::to_string(statement);
}

// A block that is no transaction: each of its statements commits by itself, unless the first call
// has begun one.
constexpr PairedCallsDialect mariadbPairs{
    .before = "BEGIN NOT ATOMIC ",
    .between = "; SELECT ?, @@in_transaction; IF NOT @@in_transaction THEN ",
    .after = "; END IF; END",
};

// A server that confirms changes before they are on its disk may lose some whenever it is ended; in
// a cluster the others have them. Since when it runs does not change, to the second.
constexpr std::string_view mariadbHistory =
    "SELECT CASE WHEN @@innodb_flush_log_at_trx_commit = 1 OR max(CASE variable_name WHEN "
    "'WSREP_CLUSTER_STATE_UUID' THEN variable_value ELSE '' END) <> '' THEN '' ELSE concat('since "
    "', unix_timestamp() - max(CASE variable_name WHEN 'UPTIME' THEN variable_value END)) END FROM "
    "information_schema.global_status WHERE variable_name IN ('WSREP_CLUSTER_STATE_UUID', "
    "'UPTIME')";

// The view of the cluster is part of it: its number and how many nodes are in it. So is a lock that
// the session has until it ends, 1 if it could take it.
constexpr std::string_view mariadbPlace =
    "SELECT concat(@@server_uid, '|', coalesce(max(CASE variable_name WHEN 'WSREP_CLUSTER_CONF_ID' "
    "THEN variable_value END), ''), '|', coalesce(max(CASE variable_name WHEN "
    "'WSREP_CLUSTER_SIZE' THEN variable_value END), ''), '|', coalesce(GET_LOCK(concat('opnimp ', "
    "connection_id()), 0), 0)) FROM information_schema.global_status "
    "WHERE variable_name IN ('WSREP_CLUSTER_CONF_ID', 'WSREP_CLUSTER_SIZE')";

// On the same server the session is gone: nobody has its lock, and it is not listed. The list alone
// does not tell: without PROCESS it shows a user's own sessions, and one that is in a procedure
// runs under the name of that procedure's owner. Of another node nothing comes any more when a
// later view of the cluster has fewer nodes.
constexpr std::string_view mariadbHasEnded =
    "SELECT CASE WHEN substring_index(lost.place, '|', 1) = @@server_uid THEN "
    "substring_index(lost.place, '|', -1) = '1' AND IS_USED_LOCK(concat('opnimp ', lost.session)) "
    "IS NULL AND NOT EXISTS (SELECT 1 FROM information_schema.processlist WHERE id = lost.session) "
    "ELSE (SELECT variable_value + 0 "
    "FROM information_schema.global_status WHERE variable_name = 'WSREP_CLUSTER_CONF_ID') > "
    "substring_index(substring_index(lost.place, '|', 2), '|', -1) + 0 AND (SELECT variable_value "
    "+ 0 FROM information_schema.global_status WHERE variable_name = 'WSREP_CLUSTER_SIZE') < "
    "substring_index(substring_index(lost.place, '|', 3), '|', -1) + 0 END FROM (SELECT ? AS "
    "session, ? AS place) AS lost";

}  // namespace

constinit const Dialect mariadbDialect{
    .statements = mariadbStatements,
    .timeLimit = timeLimit,
    .readOnly = "SET SESSION TRANSACTION READ ONLY",
    // The nodes of a cluster are one database. One that has never joined it is none.
    .databaseQuery = "SELECT database()",
    .identityQuery =
        "SELECT concat(CASE coalesce(max(variable_value), '') WHEN '' THEN @@server_uid WHEN "
        "'00000000-0000-0000-0000-000000000000' THEN NULL ELSE max(variable_value) END, '/', "
        "database()) FROM information_schema.global_status WHERE variable_name = "
        "'WSREP_CLUSTER_STATE_UUID'",
    // Only from this view, which a node answers that is cut off from its cluster.
    .notReadyQuery =
        "SELECT CASE WHEN max(variable_name = 'WSREP_CLUSTER_STATE_UUID' AND variable_value <> '') "
        "= 1 AND max(variable_name = 'WSREP_READY' AND variable_value = 'ON') = 0 THEN "
        "'it is not in its cluster now' WHEN @@read_only THEN 'it is read-only' ELSE '' END FROM "
        "information_schema.global_status WHERE variable_name IN ('WSREP_CLUSTER_STATE_UUID', "
        "'WSREP_READY')",
    .historyQuery = mariadbHistory,
    .placeQuery = mariadbPlace,
    .hasEndedQuery = mariadbHasEnded,
    // What another node has committed is there before a look-up is answered. The second setting of
    // the mode commits.
    .cluster = {.isNode = "SELECT count(*) FROM information_schema.global_status WHERE "
                          "variable_name = 'WSREP_CLUSTER_STATE_UUID' AND variable_value <> ''",
                .opening = "SET SESSION wsrep_sync_wait = 1",
                .begin = "SET @opnimp_before = WSREP_LAST_WRITTEN_GTID(), autocommit = 0",
                .commit = "SET autocommit = 1",
                .rollback = "ROLLBACK",
                .committedNothing = "SELECT @opnimp_before = WSREP_LAST_WRITTEN_GTID()"},
    .errors = mariadbErrors,
    .callBefore = "CALL ",
    .callAfter = {},
    .pairedCalls = &mariadbPairs,
    .earliestDate = anyDate,
    .encodingQuery = "SELECT @@character_set_database",
    .excessRights = mariadbExcessRights,
    .sessionQuery = "SELECT connection_id()",
    .lockHolders = mariadbLockHolders,
    .lockHoldersRight = "PROCESS",
    .transactionCount = "SELECT @@in_transaction",
    // Only those that the user has some right to are listed.
    .canRun =
        "SELECT count(*) FROM information_schema.routines WHERE routine_schema = database() "
        "AND routine_name = ?",
    .endsResultsByError = true,
};

}  // namespace velk
