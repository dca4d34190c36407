// Which database a command works on, and how it may be shown.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "apps/database/company_database.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

struct DatabaseChoice : CompanyDatabase {
  std::string shown;      ///< fit to be printed: without passwords
  OdbcOptions options{};  ///< how it is opened
};

/// The database that --database names, or the default one.
DatabaseChoice chooseDatabase(const std::optional<std::string>& option);

/// Opens it. The default database is made with the sample company when it is not there, which `err`
/// is told. Raises CannotOpen, with what to do next.
OpenDatabase openDatabase(const DatabaseChoice& choice, bool isDefault,
                          const Surroundings& surroundings, std::ostream& err);

/// Makes the sample company's database in a new file. Raises CannotOpen.
void makeDemoDatabase(const std::string& path);

/// The connection string with "***" for every password in it.
std::string maskPasswords(std::string_view connectionString);

}  // namespace velk
