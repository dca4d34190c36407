// An engine as data: what differs from SQL Server, for which the system's statements are written.
//
// A further engine is a constant of its own, as sqlite_dialect.cpp has one, with its name in
// engines.cpp.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/dates.h"
#include "platform/database.h"
#include "platform/odbc/odbc_options.h"

namespace velk {

/// One of the system's statements and what the engine is sent instead.
struct KnownStatement {
  std::string_view shape;  ///< the system's text as shapeOf() gives it
  std::string_view sql;    ///< the engine's; its marks take the literals in their order
};

/// How an engine takes two calls as one statement, in which an error of the second leaves what the
/// first has done, and one of the first keeps the second from running, as does a transaction that
/// the first has left open (paired_calls.h).
struct PairedCallsDialect {
  /// What stands around the two calls. `between` tells, by a text that takes the place of its mark,
  /// that the first has ended well and is committed. Where that is a result of its own, it has a
  /// second column, which is 1 if it is not: a transaction is open and the second does not run.
  std::string_view before;
  std::string_view between;
  std::string_view after;
  /// Answers the text that `between` took last, and after how many milliseconds of its statement,
  /// if they are kept in the session; empty if it is a result of its own among those of the calls.
  std::string_view reachedQuery = {};
  // For an engine that takes such a statement only as the body of a procedure.
  /// Answers a row for each procedure that goes by the name in the place of its mark: how many
  /// parameters it takes, -1 if it cannot be called so; what stands before its name in a call; the
  /// types of its parameters, separated by commas.
  std::string_view signatureQuery = {};
  /// The beginning of the name of such a procedure, which is gone with the session.
  std::string_view procedure = {};
  std::string_view makeProcedure = {};  ///< its marks take the name, the types and the body
  std::string_view markType = {};
  /// The driver's state when the statement has used up its time, which the two calls share. A limit
  /// for locks each of them has by itself.
  std::string_view timeUsedUp = {};
};

/// A failure that the driver reports otherwise than others do.
struct NativeError {
  std::int32_t code;               ///< the engine's own; 0: any
  std::string_view state;          ///< what other drivers would report
  std::string_view message = {};   ///< a part of the driver's text; empty if the code says enough
  std::string_view reported = {};  ///< the driver's state; empty for a general one, HY000 or 01000
};

/// What differs on a node of a cluster, where a change can meet another node's when it is committed
/// and is taken back then.
struct ClusterStatements {
  std::string_view isNode = {};   ///< answers 1 on a node; empty if there are no such clusters
  std::string_view opening = {};  ///< run on each new connection to one that takes changes
  /// What stands around the call of a procedure, which runs in one transaction by that.
  std::string_view begin = {};
  std::string_view commit = {};
  std::string_view rollback = {};
  /// Answers 1 if the connection has committed nothing since it began.
  std::string_view committedNothing = {};
};

/// Before every date that can be read.
inline constexpr Date anyDate{-1e9};

/// Who holds what a session waits for, on SQL Server. Refused without the right, where other views
/// would show nobody.
inline constexpr std::string_view blockingSessions[] = {
    "SELECT DISTINCT 'session ' + CAST(s.session_id AS varchar(11)) + ' of user ' + s.login_name + "
    "COALESCE(' (' + NULLIF(s.program_name, '') + ')', '') + COALESCE(' from ' + s.host_name, '') "
    "+ COALESCE(', in a transaction since ' + CONVERT(varchar(19), a.transaction_begin_time, 120), "
    "'') FROM sys.dm_os_waiting_tasks w "
    "JOIN sys.dm_exec_sessions s ON s.session_id = w.blocking_session_id "
    "LEFT JOIN sys.dm_tran_session_transactions t ON t.session_id = s.session_id "
    "LEFT JOIN sys.dm_tran_active_transactions a ON a.transaction_id = t.transaction_id "
    "WHERE w.session_id = CAST(? AS int) AND w.blocking_session_id <> w.session_id"};

/// The default values describe SQL Server.
struct Dialect {
  std::span<const KnownStatement> statements = {};
  /// Run on each new connection.
  std::span<const std::string_view> openingStatements = {};
  /// Gives a statement that is run on each new connection, for time limits that the driver leaves
  /// to the engine, empty if there are none; null if it leaves none.
  std::string (*timeLimit)(const OdbcOptions&) = nullptr;
  /// Run on each new connection that is to change nothing; empty if the engine cannot refuse it.
  std::string_view readOnly = {};
  /// Gives what is added to the connection string where it does not have it, each as "Name=value";
  /// null if nothing is.
  std::vector<std::string> (*connectionSettings)(const OdbcOptions&) = nullptr;
  /// Answers the database that the connection works on, where there may be none; empty: there is.
  std::string_view databaseQuery = {};
  /// Gives the id that is stored in a database, and what stores one where there is none. Empty
  /// where the names of server and database are enough to know it again.
  std::string_view identityQuery = {};
  std::span<const std::string_view> makeIdentity = {};
  /// Answers the file of an embedded database; empty for a server.
  std::string_view fileQuery = {};
  /// Answers why the server takes no changes now, an empty text if it takes them; empty if that is
  /// not known.
  std::string_view notReadyQuery = {};
  /// Answers the same text on another server of the same database only if that has all that this
  /// one confirmed; empty if each of them has.
  std::string_view historyQuery = {};
  /// Answers where a session is. Empty if hasEndedQuery needs no such answer.
  std::string_view placeQuery = {};
  /// Answers 1 if nothing more can come of a session: of what sessionQuery and placeQuery answered
  /// there, which take the places of its two marks. Empty if that cannot be told.
  std::string_view hasEndedQuery = {};
  ClusterStatements cluster = {};
  /// The first row that fits counts.
  std::span<const NativeError> errors = {};
  std::int32_t errorCodeBits = -1;  ///< of a native code, those that `errors` knows
  /// Native codes behind which nothing can be posted any more, although the connection stands.
  std::span<const std::int32_t> finalCodes = {};
  /// What stands around the name and the marks of a call.
  std::string_view callBefore = "{call ";
  std::string_view callAfter = "}";
  /// Answers what stands before them for the procedure whose name, as a literal, takes the place of
  /// the mark; empty if it is the same for all.
  std::string_view callBeforeQuery = {};
  /// Null: two calls are two statements.
  const PairedCallsDialect* pairedCalls = nullptr;
  /// Procedures are statements in a table of the database (stored_procedures.h).
  bool hasProcedureTable = false;
  /// Put before each step of a procedure that writes.
  std::string_view beforeWriting = {};
  /// A call of a procedure that the engine refuses, by an error that it has a state for, has
  /// changed nothing.
  bool hasAtomicCalls = false;
  /// Answers 1 if the same holds for the procedure whose name takes the place of the mark; empty if
  /// it holds for all or for none.
  std::string_view hasAtomicCallsQuery = {};
  /// Asks how many of the database's definitions let a single statement keep a part of its changes
  /// when it fails; empty if none can.
  std::string_view partialDefinitions = {};
  /// A procedure can begin a transaction and leave it open.
  bool canLeaveTransactions = true;
  /// The first day of the type that documents' dates have.
  Date earliestDate = Date{-53688};  // 1 January 1753
  /// Run as the first statement of each transaction, so that transactionCount can tell it.
  std::string_view transactionMark = {};
  /// Answers how texts are encoded in the database.
  std::string_view encodingQuery = {};
  /// Answers ON where statements do not tell how many rows they changed.
  std::string_view noCountQuery = {};
  /// Each answers, in a text a row, rights of the user that an import does not need.
  std::span<const std::string_view> excessRights = {};
  /// The catalogue keeps the lengths of parameters.
  bool keepsParameterLengths = true;
  /// Answers what knows the connection among all of the server; empty if nothing tells of locks.
  std::string_view sessionQuery = "SELECT @@SPID";
  /// Each answers, in a text a row, who holds the locks that the session waits for whose id takes
  /// the place of the mark. One that is refused, or has no answer, leaves it to the next.
  std::span<const std::string_view> lockHolders = blockingSessions;
  /// The right that these queries need.
  std::string_view lockHoldersRight = "VIEW SERVER STATE";
  /// Answers how many transactions the connection is in, 0 for none; empty if the engine refuses
  /// BEGIN within one instead.
  std::string_view transactionCount = "SELECT @@TRANCOUNT";
  /// Answers 0 if the user cannot run the procedure whose name, as a literal, takes the place of
  /// each mark: it is not there, or the right is missing. Engines that do not understand it are
  /// asked for their list of procedures only.
  std::string_view canRun =
      "SELECT CASE WHEN OBJECT_ID(?) IS NULL AND OBJECT_ID('master..' + ?) IS NULL THEN 0 "
      "ELSE HAS_PERMS_BY_NAME(?, 'OBJECT', 'EXECUTE') END";
  /// One statement gives one result at most.
  bool hasSingleResults = false;
  /// An error ends the results of a call. Drivers need not be asked for more; one crashes when it
  /// is.
  bool endsResultsByError = false;
  /// A cell may contain another kind of value than its column declares.
  bool hasDynamicTypes = false;
  /// A text ends at its first NUL character, so that one with a NUL cannot be passed.
  bool endsTextAtNul = false;
  /// The driver garbles characters beyond ASCII in a statement; in parameters it does not.
  bool hasAsciiStatements = false;
};

/// The row for a shape; null if the statement is none of the system's. Shapes compare exactly: the
/// system's texts are constants, so that any other letter case or blank is somebody else's text.
const KnownStatement* findStatement(const Dialect& dialect, std::string_view shape);

/// The record with its state as other drivers would report it.
Diagnostic normalized(const Dialect& dialect, Diagnostic diagnostic);

}  // namespace velk
