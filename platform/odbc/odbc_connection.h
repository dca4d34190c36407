// A database connection over any ODBC driver.
//
// SQL Server takes statements as they are and procedures as "{call name(?, ...)}". What other
// engines need is their dialect (dialect.h); the embedded database (SQLite) keeps its procedures in
// a table, too (stored_procedures.h). Every statement commits by itself unless a transaction was
// begun. All results of a statement are read when it runs.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/odbc/odbc_options.h"

namespace velk {

/// Opens. Errors: CannotConnect, with the data access library's numbers.
std::shared_ptr<OwnConnection> openOdbc(std::string_view connectionString,
                                        const OdbcOptions& options = {});

/// The connection string for an embedded database in a file, which has to exist (an empty file is
/// an empty database). Error 52 for a path that is empty or contains a NUL character.
std::string embeddedConnectionString(std::string_view file);

}  // namespace velk
