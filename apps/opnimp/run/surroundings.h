// What the program asks of the machine it runs on. Tests give it a clock, databases and interrupts
// of their own.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/dates.h"
#include "platform/database.h"
#include "platform/odbc/odbc_options.h"

namespace velk {

/// An open database. A run that may have to be taken back calls `begin` before its first call, and
/// `takeBack` or `commit` after its last. Another thread may `cancel` the statement that is
/// running.
struct OpenDatabase {
  std::shared_ptr<Connection> connection;
  std::function<void()> begin;
  std::function<void()> takeBack;
  std::function<void()> cancel = nullptr;
  std::function<void()> commit = nullptr;
  /// Whether the transaction is open still; asks the database.
  std::function<bool()> inTransaction = nullptr;
};

struct Surroundings {
  /// True once the user asked the run to end. Asked from two threads.
  std::function<bool()> interrupted;
  /// Local date and time.
  std::function<Date()> clock;
  /// Who runs the program.
  std::function<std::string()> user;
  /// OPNIMP_DATABASE; empty: it is not set.
  std::string database{};
  /// Opens a database by its ODBC connection string. Raises RuntimeError.
  std::function<OpenDatabase(const std::string& connectionString, const OdbcOptions& options)>
      openDatabase;
};

/// The machine's own clock, user and database drivers, and no interrupt.
Surroundings realSurroundings();

}  // namespace velk
