// A database connection over any ODBC driver.
//
// SQL Server takes statements as they are and procedures as "{call name(?, ...)}". What other
// engines need is their dialect (dialect.h); the embedded database (SQLite) keeps its procedures in
// a table, too (stored_procedures.h). Every statement commits by itself unless a transaction was
// begun. All results of a statement are read when it runs.
//
// Not to be used by two threads at a time, but for cancel().
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/odbc/odbc_options.h"

namespace velk {

class OdbcConnection : public Connection {
 public:
  /// Asks the driver to end the statement that is running; the only member that another thread may
  /// call. May wait as long as the driver lets nobody else in.
  virtual void cancel() = 0;
  /// Begins a transaction. Error 5 inside another one.
  virtual void beginTransaction() = 0;
  /// Takes back everything since beginTransaction; without one, nothing. Closing the connection
  /// does the same.
  virtual void rollback() = 0;
  /// Keeps everything since beginTransaction; without one, nothing. After an error nobody knows
  /// whether it is kept.
  virtual void commit() = 0;
  /// Asks the engine: a procedure may have ended the transaction that beginTransaction began.
  virtual bool isInTransaction() = 0;
  /// The same text for the same database, however it was opened: the names of server and database,
  /// or an id stored in an embedded one. `mayStore`: stores one where there is none; else the text
  /// is empty then.
  virtual std::string identity(bool mayStore) = 0;
};

/// Opens. Errors: CannotConnect, with the data access library's numbers.
std::shared_ptr<OdbcConnection> openOdbc(std::string_view connectionString,
                                         const OdbcOptions& options = {});

/// The connection string for an embedded database in a file, which has to exist (an empty file is
/// an empty database). Error 52 for a path that is empty or contains a NUL character.
std::string embeddedConnectionString(std::string_view file);

}  // namespace velk
