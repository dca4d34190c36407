// Which database a command works on, and how it may be shown.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "apps/database/company_database.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

struct DatabaseChoice : CompanyDatabase {
  std::string shown;      ///< fit to be printed: without passwords
  OdbcOptions options{};  ///< how it is opened
  /// How long that is waited for; the driver's own word, at its own limit, is better.
  std::chrono::milliseconds patience{};
};

/// The database that --database names: a connection string, or the path of an embedded database;
/// else the one of OPNIMP_DATABASE, which may also be the path of a file that holds a connection
/// string and that only its owner may read. Several, or a line each in that file, are its hosts in
/// the order in which they are tried. None is ever chosen without a word. They are opened as the
/// command needs it: only import, without --dry-run, changes anything. Raises UsageError where
/// neither is given, or an embedded one among several, and CannotOpen for such a file that will not
/// do.
std::vector<DatabaseChoice> chooseDatabases(const Arguments& arguments,
                                            const Surroundings& surroundings);

/// Opens it. Raises CannotOpen, with what to do next; RunEnded where an embedded one is locked.
std::shared_ptr<OwnConnection> openDatabase(const DatabaseChoice& choice,
                                            const Surroundings& surroundings);

/// Makes the sample company's database in a new file. Raises CannotOpen.
void makeDemoDatabase(const std::string& path);

/// The connection string with "***" for every password in it.
std::string maskPasswords(std::string_view connectionString);

}  // namespace velk
