// Where the program writes, and what it asks of the machine; tests put their own in their place.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "base/dates.h"
#include "platform/database.h"

namespace velk {

struct Streams {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;  ///< a progress line may be drawn there
};

/// An open database. `begin` and `takeBack` stand around a dry run.
struct OpenDatabase {
  std::shared_ptr<Connection> connection;
  std::function<void()> begin;
  std::function<void()> takeBack;
};

struct Machine {
  /// True once the user asked the run to end.
  std::function<bool()> interrupted;
  /// Local date and time.
  std::function<Date()> clock;
  /// Opens a database by its ODBC connection string. Raises RuntimeError.
  std::function<OpenDatabase(const std::string& connectionString)> openDatabase;
};

/// The machine's own clock and database drivers, and no interrupt.
Machine realMachine();

}  // namespace velk
