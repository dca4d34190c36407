#include "apps/database/company_database.h"

#include <filesystem>
#include <system_error>

#include "base/errors.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/utf8_path.h"
#include "samples/company/sample_company.h"

namespace velk {

namespace {

bool exists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(toPath(path), error);
}

}  // namespace

CompanyDatabase companyDatabase(const std::string& text) {
  // A file whose name holds "=" is still a file.
  if (text.find('=') != std::string::npos && !exists(text)) return {text, {}};
  return {embeddedConnectionString(text), text};
}

bool isMissing(const CompanyDatabase& database) {
  return !database.path.empty() && !exists(database.path);
}

bool makeSampleCompany(const std::string& path) {
  try {
    createSampleCompany(path);
    return true;
  } catch (const RuntimeError& error) {
    if (error.is(ErrorNumber::FileAlreadyOpen)) return false;
    throw;
  }
}

}  // namespace velk
