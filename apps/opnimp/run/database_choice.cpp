#include "apps/opnimp/run/database_choice.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/odbc/odbc_connection.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

// Where the value that starts at `from` ends: at a semicolon, except one inside braces.
std::size_t valueEnd(std::string_view text, std::size_t from) {
  if (from < text.size() && text[from] == '{') {
    std::size_t close = text.find('}', from);
    while (close != std::string_view::npos && close + 1 < text.size() && text[close + 1] == '}') {
      close = text.find('}', close + 2);
    }
    if (close == std::string_view::npos) return text.size();
    from = close;
  }
  return std::min(text.find(';', from), text.size());
}

bool isPasswordKey(std::string_view key) {
  return equalsIgnoringCase(trim(key), "pwd") || equalsIgnoringCase(trim(key), "password");
}

OpenDatabase connect(const DatabaseChoice& choice, const Surroundings& surroundings) {
  try {
    return surroundings.openDatabase(choice.connectionString);
  } catch (const RuntimeError& error) {
    throw CannotOpen(
        "the database " + choice.shown + " could not be opened: " + error.description() +
        (choice.path.empty() ? ". Check the connection string, and that its driver is installed"
                             : ". `opnimp demo-database PATH` makes an embedded database"));
  }
}

[[noreturn]] void cannotMake(const std::string& path, const std::string& why) {
  throw CannotOpen("the database " + path + " could not be made: " + why);
}

/// False when such a file is there already.
bool madeDatabase(const std::string& path) {
  try {
    return makeSampleCompany(path);
  } catch (const RuntimeError& error) {
    cannotMake(path, error.description() + ". Check the folder and its permissions");
  }
}

}  // namespace

DatabaseChoice chooseDatabase(const std::optional<std::string>& option) {
  const CompanyDatabase database = companyDatabase(option);
  return {database,
          database.path.empty() ? maskPasswords(database.connectionString) : database.path};
}

OpenDatabase openDatabase(const DatabaseChoice& choice, bool isDefault,
                          const Surroundings& surroundings, std::ostream& err) {
  if (isMissing(choice)) {
    if (!isDefault) {
      throw CannotOpen("there is no database " + choice.path + "; `opnimp demo-database " +
                       choice.path + "` makes one with the sample company");
    }
    // Another run may have made it in between: that one does as well.
    if (madeDatabase(choice.path)) {
      err << "Made " << choice.path << " with the sample company.\n";
    }
  }
  return connect(choice, surroundings);
}

void makeDemoDatabase(const std::string& path) {
  if (madeDatabase(path)) return;
  cannotMake(path, "there is such a file already. Choose another path, or remove it first");
}

std::string maskPasswords(std::string_view connectionString) {
  std::string masked;
  std::size_t start = 0;
  while (start < connectionString.size()) {
    const std::size_t equals = connectionString.find('=', start);
    if (equals == std::string_view::npos) break;
    const std::size_t end = valueEnd(connectionString, equals + 1);
    const std::string_view key = connectionString.substr(start, equals - start);
    masked.append(key).append("=");
    masked.append(isPasswordKey(key) ? "***"
                                     : connectionString.substr(equals + 1, end - equals - 1));
    if (end < connectionString.size()) masked += ';';
    start = end + 1;
  }
  if (start < connectionString.size()) masked.append(connectionString.substr(start));
  return masked;
}

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  if (fs::equivalent(a, b, error) && !error) return true;
  const fs::path first = fs::weakly_canonical(a, error);
  if (error) return a == b;
  const fs::path second = fs::weakly_canonical(b, error);
  return error ? a == b : first == second;
}

}  // namespace velk
