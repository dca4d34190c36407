// Which database a command works on, and how it may be shown.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "apps/database/company_database.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

struct DatabaseChoice : CompanyDatabase {
  std::string shown;      ///< fit to be printed: without passwords
  OdbcOptions options{};  ///< how it is opened
};

/// The database that --database names: a connection string, or the path of an embedded database;
/// else the one of OPNIMP_DATABASE, which may also be the path of a file that holds a connection
/// string and that only its owner may read. None is ever chosen without a word. Raises UsageError
/// where neither is given, and CannotOpen for such a file that will not do.
DatabaseChoice chooseDatabase(const std::optional<std::string>& option,
                              const Surroundings& surroundings);

/// How a command opens it: only import, without --dry-run, changes anything.
OdbcOptions openingOptions(const Arguments& arguments);

/// Opens it. Raises CannotOpen, with what to do next; RunEnded where an embedded one is locked.
std::shared_ptr<OwnConnection> openDatabase(const DatabaseChoice& choice,
                                            const Surroundings& surroundings);

/// The same for a command that has no run: CannotOpen also where it is locked.
std::shared_ptr<OwnConnection> openUnlocked(const DatabaseChoice& choice,
                                            const Surroundings& surroundings);

/// Makes the sample company's database in a new file. Raises CannotOpen.
void makeDemoDatabase(const std::string& path);

/// The connection string with "***" for every password in it.
std::string maskPasswords(std::string_view connectionString);

}  // namespace velk
