#include "apps/opnimp/run/database_choice.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>
#include <regex>
#include <system_error>
#include <thread>
#include <utility>

#include "apps/opnimp/audit/run_ended.h"
#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/file_bytes.h"
#include "apps/opnimp/run/connection_advice.h"
#include "base/errors.h"
#include "platform/native/native_files.h"
#include "platform/odbc/cannot_connect.h"
#include "platform/odbc/engines.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

/// More than drivers take, and little enough to search.
constexpr std::size_t longestConnectionString = 8192;

/// Beside the caller: some drivers wait for ever for a server that takes a connection and then says
/// nothing. The driver's own word is better: it gets a moment for it.
std::shared_ptr<OwnConnection> openInTime(const DatabaseChoice& choice,
                                          const Surroundings& surroundings) {
  // With what it needs, as it may outlive the caller.
  std::packaged_task<std::shared_ptr<OwnConnection>()> task(
      [open = surroundings.openDatabase, choice] {
        return open(choice.connectionString, choice.options);
      });
  auto opened = task.get_future();
  std::thread(std::move(task)).detach();
  const std::chrono::seconds longest{choice.options.loginTimeoutSeconds + 1};
  if (opened.wait_for(longest) == std::future_status::timeout) {
    throw CannotConnect(RuntimeError(ErrorNumber::ProviderTimeout, "There was no answer in time"),
                        {{"HYT01", 0, {}}});
  }
  return opened.get();
}

std::string advice(const DatabaseChoice& choice, const RuntimeError& error) {
  if (!choice.path.empty()) return "`opnimp demo-database PATH` makes an embedded database";
  const auto* failure = dynamic_cast<const CannotConnect*>(&error);
  return std::string(connectionAdvice(choice.connectionString, failure == nullptr
                                                                   ? std::vector<Diagnostic>{}
                                                                   : failure->diagnostics()));
}

std::shared_ptr<OwnConnection> connect(const DatabaseChoice& choice,
                                       const Surroundings& surroundings) {
  const bool isEmbedded = embeddedDialectIn(choice.connectionString) != nullptr;
  try {
    // A file is there at once, but may be locked for as long as --wait says.
    return isEmbedded ? surroundings.openDatabase(choice.connectionString, choice.options)
                      : openInTime(choice, surroundings);
  } catch (const RuntimeError& error) {
    if (isEmbedded && error.is(ErrorNumber::ProviderTimeout)) {
      throw RunEnded{"the database " + choice.shown + " did not answer in time (" +
                     error.description() +
                     "); --wait SECONDS or --lock-wait SECONDS gives it longer"};
    }
    // Only `shown` is printed: the connection string may contain a password.
    throw CannotOpen("the database " + choice.shown + " could not be opened: " +
                     fileErrorText(choice.path, error) + ". " + advice(choice, error));
  }
}

[[noreturn]] void cannotMake(const std::string& path, const std::string& why) {
  throw CannotOpen("the database " + path + " could not be made: " + why);
}

[[noreturn]] void cannotTake(const std::string& path, const std::string& why) {
  throw CannotOpen("OPNIMP_DATABASE: the file " + path + " " + why);
}

/// The first line of a file with a connection string.
std::string connectionStringIn(const std::string& path, std::string bytes) {
  // A password that others can read is none.
  using enum fs::perms;
  std::error_code error;
  if ((fs::status(path, error).permissions() & (group_all | others_all)) != none) {
    cannotTake(path, "may be read by others than its owner; `chmod 600` it");
  }
  bytes.resize(std::min(bytes.find_first_of("\r\n"), bytes.size()));
  if (bytes.size() > longestConnectionString || bytes.find('=') == std::string::npos) {
    cannotTake(path, "holds no connection string in its first line");
  }
  return bytes;
}

/// What --database would take.
std::string fromEnvironment(const std::string& value) {
  std::error_code error;
  if (!fs::is_regular_file(value, error)) return value;
  NativeFileSystem files;
  try {
    // An embedded database may be of any size.
    std::string bytes(longestConnectionString + 1, '\0');
    bytes.resize(files.openInput(value)->read(bytes.data(), bytes.size()));
    if (bytes.starts_with("SQLite format 3")) return value;
    return connectionStringIn(value, std::move(bytes));
  } catch (const RuntimeError& failure) {
    cannotTake(value, "could not be read: " + failure.description());
  }
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

DatabaseChoice chooseDatabase(const std::optional<std::string>& option,
                              const Surroundings& surroundings) {
  if (!option && surroundings.database.empty()) {
    throw UsageError(
        "no database is named; use --database or the environment variable OPNIMP_DATABASE. "
        "`opnimp demo-database PATH` makes one to try it on");
  }
  const CompanyDatabase database =
      companyDatabase(option ? *option : fromEnvironment(surroundings.database));
  return {database,
          database.path.empty() ? maskPasswords(database.connectionString) : database.path};
}

OdbcOptions openingOptions(const Arguments& arguments) {
  OdbcOptions options;
  options.commandTimeoutSeconds = arguments.waitSeconds.value_or(options.commandTimeoutSeconds);
  options.lockTimeoutSeconds = arguments.lockWaitSeconds.value_or(options.lockTimeoutSeconds);
  options.loginTimeoutSeconds = arguments.connectWaitSeconds.value_or(options.loginTimeoutSeconds);
  options.oneByOne = arguments.oneByOne;
  options.readOnly = arguments.command != Arguments::Command::Import || arguments.dryRun;
  return options;
}

std::shared_ptr<OwnConnection> openDatabase(const DatabaseChoice& choice,
                                            const Surroundings& surroundings) {
  // It is never made here: a typing error would fill a new sample company.
  if (isMissing(choice)) {
    throw CannotOpen("there is no database " + choice.path + "; `opnimp demo-database " +
                     choice.path + "` makes one with the sample company");
  }
  return connect(choice, surroundings);
}

std::shared_ptr<OwnConnection> openUnlocked(const DatabaseChoice& choice,
                                            const Surroundings& surroundings) {
  try {
    return openDatabase(choice, surroundings);
  } catch (const RunEnded& ended) {
    throw CannotOpen(ended.why);
  }
}

void makeDemoDatabase(const std::string& path) {
  // Here a file that exists is an error, because the user asked for a new one.
  if (madeDatabase(path)) return;
  cannotMake(path, "there is such a file already. Choose another path, or remove it first");
}

// A key is a secret's if its name holds such a part: drivers have PWD, PASSWORD2, TLSKEYPWD,
// KeystoreSecret, pqopt and more, and a further one costs only a value that nobody needs to see.
// A value in braces may contain semicolons, and a closing brace when it is doubled. Without braces
// it must not, and one that does ends where a further keyword of connection strings begins. When in
// doubt, too much is masked: also what only looks like a password inside another value's braces.
std::string maskPasswords(std::string_view connectionString) {
  if (connectionString.size() > longestConnectionString) return "***";
  // After a closing brace, or without one, the rest is masked likewise: a password that is quoted
  // wrongly must not show its end.
  static const std::regex password(
      R"(((?:^|;|\{)[^;={}]*(?:pwd|pass|secret|token|pqopt|credential|clientcert)[^;={}]*=))"
      R"(\s*(?:\{(?:[^}]|\}\})*\}?)?)"
      R"([^;]*(?:;(?!\s*(?:app|charset|client ?charset|data ?source|database|description|driver)"
      R"(|dsn|encrypt|file ?dsn|host(?:name)?|initial catalog|language|option|port|protocol|provider)"
      R"(|pwd|password|server(?:name)?|socket|ssl\w*|sync\w*|tds_version|timeout|trust\w*|uid)"
      R"(|user(?: ?(?:id|name))?|wsid)\s*=|\s*$)[^;]*)*)",
      std::regex::icase);
  return std::regex_replace(std::string(connectionString), password, "$1***");
}

}  // namespace velk
