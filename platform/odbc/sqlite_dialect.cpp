#include "platform/odbc/sqlite_dialect.h"

#include <algorithm>
#include <array>
#include <limits>

#include "platform/odbc/system_statements.h"

namespace velk {
namespace {

// A statement that an import sends for each record has a row even if the engine understands it as
// it is: only the statements of rows have their literals bound and stay prepared.
constexpr auto statements = std::to_array<KnownStatement>({
    {shape::openingDate, standard::openingDate},
    {shape::now, "SELECT datetime('now','localtime')"},
    {shape::customerExists, standard::customerExists},
    {shape::vendorExists, shape::vendorExists},
    {shape::dsType, standard::dsType},
    {shape::salesmen, standard::salesmen},
});

// Foreign keys are checked only on connections that ask for it.
// The second reads the file: one that is no database is found out here.
// A trigger or view of a database that comes from elsewhere calls no function that reaches beyond
// the database: the driver has one that writes files.
constexpr auto openingStatements = std::to_array<std::string_view>(
    {"PRAGMA foreign_keys = ON", "PRAGMA schema_version", "PRAGMA trusted_schema = OFF"});

// A path says little: files are copied, renamed and put back.
// The insertion is one statement, so that two programs cannot store two ids.
// First a look at the procedures: a database without them is some other application's, and nothing
// is made in it.
constexpr auto makeIdentity = std::to_array<std::string_view>(
    {"SELECT 1 FROM StoredProcedure LIMIT 0",
     "CREATE TABLE IF NOT EXISTS DatabaseIdentity (id TEXT NOT NULL)",
     "INSERT INTO DatabaseIdentity SELECT lower(hex(randomblob(16))) WHERE NOT EXISTS (SELECT 1 "
     "FROM DatabaseIdentity)"});

// By the engine's result code.
// Rows with a message come before the general row of their code, because the first that fits
// counts.
constexpr auto errors = std::to_array<NativeError>({
    {1, "42S02", "no such table"},
    {1, "42000"},
    {3, "42501"},                               // access permission denied
    {5, "HYT00"},                               // database is locked
    {6, "HYT00"},                               // table is locked
    {8, "42501"},                               // attempt to write a read-only database
    {13, "53100"},                              // database or disk is full
    {14, "08001"},                              // unable to open the file
    {18, "22001"},                              // text or row too big
    {19, "23000"},                              // constraint
    {23, "42501"},                              // authorization denied
    {26, "08001"},                              // not a database
    {0xFF, "42000", "only one SQL statement"},  // -1, the driver's own code
});

// Its disk fails, it is damaged, or its disk is full. What an error of the disk or damage leaves of
// a change is not known, so that `errors` has no row for them.
constexpr auto finalCodes = std::to_array<std::int32_t>({10, 11, 13});

// The driver waits 100 seconds for a lock unless the connection string has another limit. It tries
// twice and waits up to the limit each time, so it gets half of what a statement may take. A
// mistyped path must not make a new, empty database.
std::vector<std::string> settings(const OdbcOptions& options) {
  // A command without a limit waits for a lock without one, too.
  static constexpr std::int64_t forEver = std::numeric_limits<int>::max();
  const auto limit = [](int seconds) {
    return seconds <= 0 ? forEver : std::min(std::int64_t{seconds} * 1000 / 2, forEver);
  };
  return {"NoCreat=1", "Timeout=" + std::to_string(std::min(limit(options.commandTimeoutSeconds),
                                                            limit(options.lockTimeoutSeconds)))};
}

}  // namespace

constinit const Dialect sqliteDialect{
    .statements = statements,
    .openingStatements = openingStatements,
    .readOnly = "PRAGMA query_only = ON",
    .connectionSettings = settings,
    .identityQuery = "SELECT id FROM DatabaseIdentity",
    .makeIdentity = makeIdentity,
    .fileQuery = "SELECT file FROM pragma_database_list WHERE name = 'main'",
    .errors = errors,
    .errorCodeBits = 0xFF,  // extended result codes add higher bits
    .finalCodes = finalCodes,
    .hasProcedureTable = true,
    // The driver keeps a statement compiled between executions only if it begins as a query may.
    // Without this an import of 10,000 documents takes 40 % longer.
    .beforeWriting = "WITH kept AS (SELECT 1) ",
    .hasAtomicCalls = true,
    // ON CONFLICT FAIL of a table, RAISE(FAIL) of a trigger, OR FAIL of these and of procedures.
    .partialDefinitions =
        "SELECT count(*) FROM (SELECT sql FROM sqlite_master UNION ALL "
        "SELECT statement FROM StoredProcedure) WHERE sql LIKE '%FAIL%'",
    .canLeaveTransactions = false,
    .earliestDate = anyDate,
    .encodingQuery = "PRAGMA encoding",
    .sessionQuery = {},
    .lockHolders = {},
    .transactionCount = {},
    .canRun = {},
    .hasSingleResults = true,
    .hasDynamicTypes = true,
    .endsTextAtNul = true,
    .hasAsciiStatements = true,
};

}  // namespace velk
