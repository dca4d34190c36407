// Which database a command works on, and how it may be shown.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "apps/opnimp/run/surroundings.h"

namespace velk {

struct DatabaseChoice {
  std::string shown;             ///< fit to be printed: without passwords
  std::string connectionString;  ///< of an ODBC driver
  std::string path;              ///< of an embedded database; empty otherwise
};

/// What --database means: the path of an embedded database, or, where it holds "=" and no file is
/// so called, an ODBC connection string. Without it, opnimp.db in the current folder.
DatabaseChoice chooseDatabase(const std::optional<std::string>& option);

/// Opens it. The default database is made with the sample company when it is not there, which `err`
/// is told. Raises CannotOpen, with what to do next.
OpenDatabase openDatabase(const DatabaseChoice& choice, bool isDefault,
                          const Surroundings& surroundings, std::ostream& err);

/// Makes the sample company's database in a new file. Raises CannotOpen.
void makeDemoDatabase(const std::string& path);

/// The connection string with "***" for every password in it.
std::string maskPasswords(std::string_view connectionString);

/// Whether both paths lead to the same file; also for files that do not exist yet.
bool isSameFile(const std::string& a, const std::string& b);

}  // namespace velk
