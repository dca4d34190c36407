// What the program asks of the machine it runs on. Tests give it a clock, databases and interrupts
// of their own.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "base/dates.h"
#include "platform/database.h"
#include "platform/odbc/odbc_options.h"

namespace velk {

struct Surroundings {
  /// True once the user asked the run to end. Asked from two threads.
  std::function<bool()> interrupted;
  /// Local date and time.
  std::function<Date()> clock;
  /// Who runs the program.
  std::function<std::string()> user;
  /// All of standard input. Raises RuntimeError; number 7 beyond `most` bytes.
  std::function<std::string(std::size_t most)> input;
  /// OPNIMP_DATABASE; empty: it is not set.
  std::string database{};
  /// Opens a database by its ODBC connection string. Raises RuntimeError.
  std::function<std::shared_ptr<OwnConnection>(const std::string& connectionString,
                                               const OdbcOptions& options)>
      openDatabase;
  /// How long a run that lost its host waits for another one.
  std::chrono::seconds hostPatience{60};
  /// How long after its time-out a statement is given up that the driver does not end.
  std::chrono::milliseconds answerPatience{5000};
  std::string stateFolder;       ///< where programs keep what they remember; empty: there is none
  std::string settingsFolder{};  ///< where the user's settings of programs are; empty: none
  /// The program itself, to ask the database what the run cannot ask while it waits; empty: such
  /// things stay unknown.
  std::string program{};
  std::string machineStart;  ///< another text after each start of the machine
};

/// The machine's own clock, user and database drivers, and no interrupt.
Surroundings realSurroundings();

}  // namespace velk
