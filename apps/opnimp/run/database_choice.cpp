#include "apps/opnimp/run/database_choice.h"

#include <regex>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/errors.h"

namespace velk {

namespace {

OpenDatabase connect(const DatabaseChoice& choice, const Surroundings& surroundings) {
  try {
    return surroundings.openDatabase(choice.connectionString, choice.options);
  } catch (const RuntimeError& error) {
    // Only `shown` is printed: the connection string may contain a password.
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
    // A named file is never made here: a typing error would fill a new sample company.
    if (!isDefault) {
      throw CannotOpen("there is no database " + choice.path + "; `opnimp demo-database " +
                       choice.path + "` makes one with the sample company");
    }
    // Another run may have made it in the meantime, which is as good.
    if (madeDatabase(choice.path)) {
      err << "Made " << choice.path << " with the sample company.\n";
    }
  }
  return connect(choice, surroundings);
}

void makeDemoDatabase(const std::string& path) {
  // Here a file that exists is an error, because the user asked for a new one.
  if (madeDatabase(path)) return;
  cannotMake(path, "there is such a file already. Choose another path, or remove it first");
}

// A value in braces may contain semicolons, and a closing brace when it is doubled. When in doubt,
// too much is masked: also what only looks like a password inside another value's braces.
std::string maskPasswords(std::string_view connectionString) {
  constexpr std::size_t longest = 8192;  // more than drivers take, and little enough to search
  if (connectionString.size() > longest) return "***";
  // After a closing brace, or without one, the rest up to the next semicolon is masked as well:
  // a password that is quoted wrongly must not show its end.
  static const std::regex password(
      R"(((?:^|;|\{)\s*(?:pwd|password)\s*=)(\{(?:[^}]|\}\})*\}?[^;]*|[^;]*))", std::regex::icase);
  return std::regex_replace(std::string(connectionString), password, "$1***");
}

}  // namespace velk
