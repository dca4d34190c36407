// One open connection of the database interface, with what all of its statements need.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/odbc/engines.h"
#include "platform/odbc/odbc_handle.h"
#include "platform/odbc/odbc_options.h"

namespace velk {

class OdbcSession {
 public:
  /// Opens. Errors: CannotConnect.
  OdbcSession(std::string_view connectionString, const OdbcOptions& options);

  const Dialect& dialect() const { return *dialect_; }
  const OdbcOptions& options() const { return options_; }
  SQLHANDLE handle() const { return connection_.get(); }

  /// A new statement handle with the command time-out set.
  StatementHandle newStatement() const;

  /// Runs one statement as the engine itself writes it and drops its results.
  void executeNative(std::string_view sql);

  /// One of the names that SQLGetInfo tells; empty if the driver does not.
  std::string information(SQLUSMALLINT type) const;

  /// Passes the success of a call; else keeps its diagnostics and throws them.
  void check(SQLRETURN result) { check(result, SQL_HANDLE_DBC, handle()); }
  void checkStatement(SQLRETURN result, SQLHANDLE statement) {
    check(result, SQL_HANDLE_STMT, statement);
  }

  /// Adds what the statement reports now to the diagnostics of the failure before it.
  void addDiagnostics(SQLHANDLE statement) { add(SQL_HANDLE_STMT, statement); }

  const std::vector<Diagnostic>& diagnostics() const { return diagnostics_; }
  /// Those of an earlier failure, what was asked since being of no account.
  void setDiagnostics(std::vector<Diagnostic> diagnostics) {
    diagnostics_ = std::move(diagnostics);
  }
  /// The last failure's state as the driver had it, before it was made another's.
  const std::string& reportedState() const { return reportedState_; }
  bool isLost() const { return lost_; }
  /// The connection is in no known state and must not be used any more.
  void giveUp() { lost_ = true; }

  /// How far the call in hand has come.
  enum class Sent { Nothing, Asked, Done };
  Sent sent() const { return sent_; }
  void setSent(Sent sent) { sent_ = sent; }

  /// The statement that cancel() is to reach; null: none.
  void setRunning(SQLHANDLE statement);
  /// Asks the driver to end the statement that is running, from any thread. May wait as long as the
  /// driver lets nobody else in.
  void cancel();
  /// Whether that was asked for.
  bool wasCancelled() const { return wasCancelled_; }

 private:
  void add(SQLSMALLINT handleType, SQLHANDLE handle);
  bool isDead() const;
  void check(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle) {
    if (!SQL_SUCCEEDED(result)) throw failure(handleType, handle);
  }
  RuntimeError failure(SQLSMALLINT handleType, SQLHANDLE handle);
  void open(std::string_view connectionString);
  void connect(const std::string& connectionString);
  std::string withSettings(std::string_view connectionString) const;

  EnvironmentHandle environment_;
  ConnectionHandle connection_;
  OdbcOptions options_;
  const Dialect* dialect_ = &dialectOf({});
  std::vector<Diagnostic> diagnostics_;
  std::string reportedState_;
  bool lost_ = false;
  Sent sent_ = Sent::Nothing;
  std::mutex runningMutex_;  // held while the handle is in use elsewhere than in its own thread
  SQLHANDLE running_ = nullptr;
  std::atomic<bool> wasCancelled_ = false;
};

/// What is asked while this lives changes nothing, whatever comes of it.
class OnlyAsking {
 public:
  explicit OnlyAsking(OdbcSession& session) : session_(session) {}
  ~OnlyAsking() { session_.setSent(OdbcSession::Sent::Nothing); }
  OnlyAsking(const OnlyAsking&) = delete;
  OnlyAsking& operator=(const OnlyAsking&) = delete;

 private:
  OdbcSession& session_;
};

}  // namespace velk
