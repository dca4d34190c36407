// The database that a program of this system works on, as its user names it.
#pragma once

#include <string>

namespace velk {

struct CompanyDatabase {
  std::string connectionString;  ///< of an ODBC driver
  std::string path;              ///< of an embedded database's file; empty for any other database
};

/// What --database means: the path of an embedded database, or, where it contains "=" and no file
/// has that name, an ODBC connection string. Error 52 for a path that an embedded database cannot
/// have.
CompanyDatabase companyDatabase(const std::string& text);

/// True for an embedded database whose file is not there.
bool isMissing(const CompanyDatabase& database);

/// Makes an embedded database with the sample company. False when there is such a file already,
/// which stays as it is. Errors: those of createSampleCompany.
bool makeSampleCompany(const std::string& path);

}  // namespace velk
