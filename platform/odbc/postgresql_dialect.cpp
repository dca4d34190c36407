#include "platform/odbc/postgresql_dialect.h"

#include <array>

#include "platform/odbc/system_statements.h"

namespace velk {
namespace {

// The N of a literal would make it a type of its own, whose trailing blanks do not count.
constexpr auto postgresqlStatements = std::to_array<KnownStatement>({
    {shape::openingDate, standard::openingDate},
    {shape::now, "SELECT localtimestamp"},
    {shape::customerExists, standard::customerExists},
    {shape::vendorExists, shape::vendorExists},
    {shape::dsType, standard::dsType},
    {shape::salesmen, standard::salesmen},
});

// What follows the user is shown only of sessions of one's own, or with the role pg_read_all_stats.
constexpr auto postgresqlLockHolders = std::to_array<std::string_view>(
    {"SELECT concat('session ', pid, ' of user ' || usename, ' (' || nullif(application_name, '') "
     "|| ')', ' from ' || host(client_addr), ', in a transaction since ' || to_char(xact_start, "
     "'YYYY-MM-DD HH24:MI:SS')) FROM pg_stat_activity "
     "WHERE pid = ANY (pg_blocking_pids(CAST(? AS integer))) ORDER BY pid"});

// The last one is about procedures that run with their owner's rights, and find tables of their
// caller's before the company's.
constexpr auto postgresqlExcessRights = std::to_array<std::string_view>(
    {"SELECT 'to do everything, as a superuser' FROM pg_roles WHERE rolname = current_user AND "
     "rolsuper",
     "SELECT 'to run programs or reach files of the server, as a member of ' || rolname "
     "FROM pg_roles WHERE rolname IN ('pg_execute_server_program', 'pg_read_server_files', "
     "'pg_write_server_files') AND pg_has_role(oid, 'MEMBER') ORDER BY rolname",
     "SELECT 'to make tables and procedures in the schema ' || nspname FROM pg_namespace WHERE "
     "nspname !~ '^pg_' AND nspname <> 'information_schema' AND has_schema_privilege(oid, "
     "'CREATE') ORDER BY nspname",
     "SELECT 'to write the table ' || relname FROM pg_class c JOIN pg_namespace n ON n.oid = "
     "relnamespace WHERE relkind IN ('r', 'p') AND nspname !~ '^pg_' AND nspname <> "
     "'information_schema' AND has_table_privilege(c.oid, 'INSERT, UPDATE, DELETE, TRUNCATE') "
     "ORDER BY relname",
     "SELECT DISTINCT 'to put temporary tables in the place of those of ' || proname || ', whose "
     "search_path does not end with pg_temp' FROM pg_proc p JOIN pg_namespace n ON n.oid = "
     "pronamespace WHERE prosecdef AND nspname !~ '^pg_' AND nspname <> 'information_schema' AND "
     "has_function_privilege(p.oid, 'EXECUTE') AND has_database_privilege(current_database(), "
     "'TEMPORARY') AND NOT EXISTS (SELECT 1 FROM unnest(proconfig) AS setting WHERE setting ~ "
     "'^search_path=(\"\"|(.*, )?pg_temp)$') ORDER BY 1"});

constexpr auto postgresqlErrors = std::to_array<NativeError>({
    {0, "HYT00", {}, "57014"},  // cancelled, by the statement's time limit too
    {0, "HYT00", {}, "55P03"},  // lock not available in time
    {0, "42S02", {}, "42P01"},  // no such table
    {0, "08S01", {}, "57P01"},  // shut down, crashed, starting
    {0, "08S01", {}, "57P02"},
    {0, "08S01", {}, "57P03"},
    {0, "28000", {}, "28P01"},
});

// Only a procedure can commit what it has done so far. The setting is committed along with it.
// One of several procedures of a name is chosen by the types of what it is called with, which are
// others here: such a name has no pairs.
constexpr PairedCallsDialect postgresqlPairs{
    .before = "BEGIN ",
    .between =
        "; PERFORM set_config('opnimp.reached', ?, false), set_config('opnimp.took', "
        "(extract(epoch FROM clock_timestamp() - statement_timestamp()) * "
        "1000)::bigint::text, false); COMMIT; ",
    .after = "; END",
    .reachedQuery =
        "SELECT current_setting('opnimp.reached', true), current_setting('opnimp.took', true)",
    .signatureQuery =
        "SELECT CASE WHEN provariadic <> 0 OR prokind NOT IN ('f', 'p') OR prokind = 'p' AND "
        "proargmodes IS NOT NULL THEN -1 ELSE pronargs END, "
        "CASE prokind WHEN 'f' THEN 'PERFORM * FROM ' ELSE 'CALL ' END, "
        "(SELECT string_agg(format_type(t, NULL), ', ' ORDER BY n) FROM unnest(proargtypes) WITH "
        "ORDINALITY AS a(t, n)) "
        "FROM pg_proc WHERE proname = lower(?) AND pg_function_is_visible(oid)",
    .procedure = "pg_temp.opnimp_pair_",
    .makeProcedure = "CREATE PROCEDURE ?(?) LANGUAGE plpgsql AS $pair$ ? $pair$",
    .markType = "text",
    .timeUsedUp = "57014",
};
// The driver itself has a limit for statements.
std::string lockLimit(const OdbcOptions& options) {
  if (!options.waitsForLocks) return "SET lock_timeout = '100ms'";  // 0 is for ever
  const int seconds = options.lockTimeoutSeconds;
  return seconds <= 0 ? "" : "SET lock_timeout = '" + std::to_string(seconds) + "s'";
}

// A standby that takes over begins a new line of changes; a server that confirms them before they
// are on its disk may lose some whenever it is ended.
constexpr std::string_view postgresqlHistory =
    "SELECT substr(pg_walfile_name(pg_current_wal_lsn()), 1, 8) || CASE WHEN "
    "current_setting('synchronous_commit') = 'off' THEN '/' || pg_postmaster_start_time() ELSE '' "
    "END";

// What was sent elsewhere cannot come into another line.
constexpr std::string_view postgresqlHasEnded =
    "SELECT CASE WHEN substr(pg_walfile_name(pg_current_wal_lsn()), 1, 8) <> substr(lost.place, 1, "
    "8) THEN 1 WHEN EXISTS (SELECT 1 FROM pg_stat_activity WHERE pid::text = lost.session) THEN 0 "
    "ELSE 1 END FROM (SELECT ?::text AS session, ?::text AS place) AS lost";

}  // namespace

constinit const Dialect postgresqlDialect{
    .statements = postgresqlStatements,
    .timeLimit = lockLimit,
    .readOnly = "SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY",
    // A copy that was restored elsewhere is another database; one that took over as a standby is
    // not.
    .identityQuery =
        "SELECT system_identifier || '/' || current_database() FROM pg_control_system()",
    // Not the setting in force: a session that is to change nothing has set it itself.
    .notReadyQuery =
        "SELECT CASE WHEN pg_is_in_recovery() THEN 'it is a standby, which takes no changes' WHEN "
        "(SELECT reset_val FROM pg_settings WHERE name = 'default_transaction_read_only') = 'on' "
        "THEN 'it is read-only' ELSE '' END",
    .historyQuery = postgresqlHistory,
    .placeQuery = postgresqlHistory,
    .hasEndedQuery = postgresqlHasEnded,
    .errors = postgresqlErrors,
    .callBefore = "CALL ",
    .callAfter = {},
    .callBeforeQuery =
        "SELECT CASE WHEN bool_and(prokind = 'f') THEN 'SELECT * FROM ' ELSE 'CALL ' "
        "END FROM pg_proc WHERE proname = lower(?) AND pg_function_is_visible(oid)",
    .pairedCalls = &postgresqlPairs,
    // Only a procedure may commit what it has done so far, and neither one that runs with its
    // owner's rights nor one with settings of its own may.
    .hasAtomicCallsQuery =
        "SELECT CASE WHEN bool_and(prokind = 'f' OR prosecdef OR proconfig IS NOT NULL) THEN 1 "
        "ELSE 0 END FROM pg_proc WHERE proname = lower(?) AND pg_function_is_visible(oid)",
    // A setting that the transaction takes along when it ends.
    .canLeaveTransactions = false,
    .earliestDate = anyDate,
    .transactionMark = "SELECT set_config('opnimp.transaction', '1', true)",
    .encodingQuery = "SHOW server_encoding",
    .excessRights = postgresqlExcessRights,
    .keepsParameterLengths = false,
    .sessionQuery = "SELECT pg_backend_pid()",
    .lockHolders = postgresqlLockHolders,
    .lockHoldersRight = {},
    .transactionCount =
        "SELECT CASE WHEN current_setting('opnimp.transaction', true) = '1' THEN 1 ELSE 0 END",
    .canRun =
        "SELECT count(*)::int FROM pg_proc WHERE proname = lower(?) AND "
        "pg_function_is_visible(oid) AND has_function_privilege(oid, 'EXECUTE')",
    .endsResultsByError = true,
    .endsTextAtNul = true,
};

}  // namespace velk
