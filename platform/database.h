// The little of the data access library (ADO) that the system uses, under ADO's own names.
//
// Realizations: the host's ADO connection (Windows), any ODBC driver (platform/odbc), and wrappers
// such as the runner's recorder. Commands come only from a connection, so whoever wraps a
// connection sees every statement. All calls throw RuntimeError; the numbers are ADO's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/values.h"

namespace velk {

/// ADO type codes in use.
enum class DataType : std::int32_t { Integer = 3, Double = 5, Date = 7, VarChar = 200 };

enum class CommandType : std::int32_t { Text = 1, StoredProcedure = 4 };

/// What a command is run for. The library underneath does not need to know; whoever wraps a
/// connection may keep what posts from being run.
enum class Purpose { Post, Ask };

/// ADO's adParamInput, the only direction in use.
inline constexpr std::int32_t inputParameter = 1;

/// The declared size of every parameter. Of a text it is the longest that can be passed, in UTF-16
/// units.
inline constexpr std::int32_t parameterSize = 2048;

/// ADO's ObjectStateEnum.
inline constexpr std::int32_t stateClosed = 0;
inline constexpr std::int32_t stateOpen = 1;

/// ADO's default execute options, adOptionUnspecified.
inline constexpr std::int32_t defaultOptions = -1;

/// What a driver said about a failure, one record of possibly several.
struct Diagnostic {
  std::string state;  ///< SQLSTATE, five characters
  std::int32_t native = 0;
  std::string message;
};

class Recordset {
 public:
  virtual ~Recordset() = default;

  /// 0 closed (a statement that returned no rows), 1 open. Every other member but NextRecordset
  /// raises 3704 on a closed one.
  virtual std::int32_t State() const = 0;
  /// No current record because the end, or the beginning, has been passed. Both are
  /// true if there are no rows.
  virtual bool isEOF() const = 0;
  virtual bool isBOF() const = 0;
  virtual void MoveNext() = 0;
  /// The field at a zero-based position of the current record. Errors: 3021 without a current
  /// record, 3265 for a position that does not exist.
  virtual Value field(std::size_t position) const = 0;
  /// The next result of the same command, open or closed; null when there is none. An error that a
  /// later statement of the command met is raised here. Results read before stay as they are.
  virtual std::shared_ptr<Recordset> NextRecordset() = 0;
  /// Error 3704 when closed already.
  virtual void Close() = 0;
};

class Command {
 public:
  virtual ~Command() = default;

  virtual void setCommandType(CommandType type) = 0;
  virtual void setCommandText(std::string_view text) = 0;
  /// Until it is set, a command is taken to post.
  virtual void setPurpose(Purpose /*purpose*/) {}
  /// CreateParameter and Parameters.Append. Parameters are bound by position; names need only be
  /// distinct. `type` is any ADO code; those not listed in DataType may be refused by Execute.
  virtual void Append(std::string_view name, std::int32_t type, std::int32_t direction,
                      std::int32_t size) = 0;
  /// Sets the value of the parameter at a zero-based position. Error 3265 when there is none.
  virtual void setValue(std::size_t position, const Value& value) = 0;
  /// Never null on success: a statement without rows gives a closed record set.
  virtual std::shared_ptr<Recordset> Execute(std::int32_t options) = 0;
};

/// One parameter of a stored procedure.
struct ProcedureParameter {
  Value value;
  DataType type = DataType::VarChar;
};

/// A stored procedure and what it is called with, by position.
struct ProcedureCall {
  std::string_view name;
  std::span<const ProcedureParameter> parameters;
};

/// Two calls that post one record. Each is to be asked for once, in their order, and answers or
/// raises what its own Execute would.
class CallPair {
 public:
  virtual ~CallPair() = default;
  virtual std::shared_ptr<Recordset> first() = 0;
  /// Whatever came of the first one.
  virtual std::shared_ptr<Recordset> second() = 0;
  /// Before first(): whether it sends both calls in one message. After it: whether the second one
  /// was sent, as far as is known.
  virtual bool isSentTogether() const { return false; }
};

class Connection {
 public:
  virtual ~Connection() = default;

  /// Runs a text query. Never null on success.
  virtual std::shared_ptr<Recordset> Execute(std::string_view text) = 0;
  virtual std::unique_ptr<Command> newCommand() = 0;
  /// Two calls that post, of which the second follows a first one that failed, too. One after the
  /// other, unless the connection knows how to send both at once with the same effect. What the
  /// calls refer to, and the connection, have to outlive the pair.
  virtual std::unique_ptr<CallPair> postBoth(const ProcedureCall& first,
                                             const ProcedureCall& second);

  /// Everything the driver said about the last failure, first record first; empty where the library
  /// underneath keeps none.
  virtual std::vector<Diagnostic> diagnostics() const { return {}; }
  /// Whether the procedure call that failed last is known to have changed nothing. Where it is not,
  /// the call may have taken effect, in whole or in part, whatever error it raised.
  virtual bool changedNothing() const { return false; }
  /// Whether a call of the procedure with as many parameters is known to be refused: it is not
  /// there, takes fewer, or may not be run. Asks once for each.
  virtual bool isRefused(std::string_view /*procedure*/, std::size_t /*parameters*/) {
    return false;
  }
  /// True once the connection is gone, or given up because nobody knows any more where it stands: a
  /// call may or may not have taken effect, and nothing more can be asked.
  virtual bool isLost() const { return false; }
  /// True when, by the last failure, nothing can be posted any more although the connection stands:
  /// the disk of an embedded database is full, say.
  virtual bool isSpent() const { return false; }
  /// How often a call was made again that had met another session's change and was taken back.
  virtual std::size_t repeatedCalls() const { return 0; }
};

/// Two calls that the connection runs one after the other, each as a command.
std::unique_ptr<CallPair> oneByOne(Connection& connection, const ProcedureCall& first,
                                   const ProcedureCall& second);

/// A parameter of a procedure, as the engine's catalogue has it.
struct CatalogueParameter {
  std::string name;  ///< empty where it is not told, as the type
  std::string type;
  std::int32_t length = 0;  ///< of a text, the longest that it takes; 0: not told
};

/// What an engine tells of a database and of the user's rights to it; empty what it does not.
struct DatabaseFacts {
  std::string engine;    ///< and its version
  std::string encoding;  ///< of texts in the database
  std::string noCount;   ///< ON, or OFF: statements tell how many rows they changed
  /// Rights that an import does not need, and that do harm when a text becomes a statement; such
  /// as "to write the table Setup".
  std::vector<std::string> excessRights;
};

/// Runs a procedure as a command of the connection. Raises what the command raises.
std::shared_ptr<Recordset> runProcedure(Connection& connection, const ProcedureCall& call,
                                        Purpose purpose);
/// Who keeps a session waiting.
struct LockHolders {
  /// Such as "session 4711 of user clerk"; empty where it waits for no lock.
  std::vector<std::string> names;
  /// The right without which the engine does not tell all; empty where the user has it.
  std::string missingRight;
};

/// A connection that nobody else uses: it may be kept in a transaction, and be asked which database
/// it leads to. The defaults are those of one that changes nothing. Not to be used by two threads
/// at a time, but for cancel().
class OwnConnection : public Connection {
 public:
  /// The one cell that each of the queries answers, in as few messages as the connection can.
  virtual std::vector<Value> askTogether(std::span<const std::string> queries);
  /// Asks the driver to end the statement that is running; the only member that another thread may
  /// call. May wait as long as the driver lets nobody else in.
  virtual void cancel() {}
  /// Begins a transaction. Error 5 inside another one.
  virtual void beginTransaction() {}
  /// Takes back everything since beginTransaction; without one, nothing. Closing the connection
  /// does the same.
  virtual void rollback() {}
  /// Keeps everything since beginTransaction; without one, nothing. After an error nobody knows
  /// whether it is kept.
  virtual void commit() {}
  /// Asks the engine: a procedure may have ended the transaction that beginTransaction began.
  virtual bool isInTransaction() { return false; }
  /// Whether a procedure can begin a transaction and leave it open without an error.
  virtual bool canLeaveTransactions() const { return false; }
  /// The first day that a document can have in the database.
  virtual Date earliestDate() const { return Date{-1e9}; }
  /// The same text for the same database, however it was opened: the names of server and database,
  /// or an id stored in an embedded one. `mayStore`: stores one where there is none; else the text
  /// is empty then, as where nothing can be told.
  virtual std::string identity(bool /*mayStore*/) { return {}; }
  /// The file of an embedded database, which confirms what the disk may not have yet; empty for
  /// any other.
  virtual std::string file() { return {}; }
  /// Whether it works on a database, not on a server as such.
  virtual bool hasDatabase() { return true; }
  virtual DatabaseFacts facts() { return {}; }
  /// Of a procedure that may be called; empty where the catalogue does not tell.
  virtual std::vector<CatalogueParameter> parametersOf(std::string_view /*procedure*/) {
    return {};
  }
  /// Why the server takes no changes now, although it answers; empty if it takes them.
  virtual std::string whyNotReady() { return {}; }
  /// Of two servers of one database: the same text if the second one has all that the first one
  /// confirmed. Of one that takes changes.
  virtual std::string history() { return {}; }
  /// Where the session is, for hasEnded on another connection.
  virtual std::string place() { return {}; }
  /// Whether nothing of what a lost connection had sent can take effect any more. False where that
  /// is not known.
  virtual bool hasEnded(std::string_view /*session*/, std::string_view /*place*/) { return true; }
  /// What another connection knows this one by; empty where the engine has no such name.
  virtual std::string session() { return {}; }
  /// Who holds the locks that another connection waits for at this moment.
  virtual LockHolders lockHolders(std::string_view /*session*/) { return {}; }
};

/// A connection that was never opened: whatever is executed is error 3709.
class ClosedConnection : public Connection {
 public:
  std::shared_ptr<Recordset> Execute(std::string_view text) override;
  std::unique_ptr<Command> newCommand() override;
};

}  // namespace velk
