#include "apps/opnimp/run/database_choice.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>
#include <regex>
#include <sstream>
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
#include "platform/native/native_privacy.h"
#include "platform/native/native_sync.h"
#include "platform/odbc/cannot_connect.h"
#include "platform/odbc/engines.h"
#include "platform/utf8_path.h"

namespace velk {

namespace {

namespace fs = std::filesystem;

/// More than drivers take, and little enough to search.
constexpr std::size_t longestConnectionString = 8192;
constexpr std::size_t mostHosts = 16;
constexpr std::string_view exampleString = "Driver={PostgreSQL Unicode};Server=HOST;Database=NAME";
/// Editors put it before the first line.
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Beside the caller: some drivers wait for ever for a server that takes a connection and then says
/// nothing.
std::shared_ptr<OwnConnection> openInTime(const DatabaseChoice& choice,
                                          const Surroundings& surroundings) {
  // With what it needs, as it may outlive the caller.
  std::packaged_task<std::shared_ptr<OwnConnection>()> task(
      [open = surroundings.openDatabase, choice] {
        return open(choice.connectionString, choice.options);
      });
  auto opened = task.get_future();
  std::thread(std::move(task)).detach();
  if (opened.wait_for(choice.patience) == std::future_status::timeout) {
    throw CannotConnect(RuntimeError(ErrorNumber::ProviderTimeout, "There was no answer in time"),
                        {{"HYT01", 0, {}}});
  }
  return opened.get();
}

// A key is a secret's if its name holds such a part: drivers have PWD, PASSWORD2, TLSKEYPWD,
// KeystoreSecret, pqopt and more, and a further one costs only a value that nobody needs to see.
// A value in braces may contain semicolons, and a closing brace when it is doubled. Without braces
// it must not, and one that does ends where a further keyword of connection strings begins. When in
// doubt, too much is masked: also what only looks like a password inside another value's braces.
const std::regex& secret() {
  // After a closing brace, or without one, the rest is masked likewise: a password that is quoted
  // wrongly must not show its end.
  static const std::regex password(
      R"(((?:^|[;={\s])[^;={}]*(?:pwd|pass|secret|token|pqopt|credential|clientcert)[^;={}]*=))"
      R"(\s*(?:\{(?:[^}]|\}\})*\}?)?)"
      R"([^;]*(?:;(?!\s*(?:app|charset|client ?charset|data ?source|database|description|driver)"
      R"(|dsn|encrypt|file ?dsn|host(?:name)?|initial catalog|language|option|port|protocol|provider)"
      R"(|pwd|password|server(?:name)?|socket|ssl\w*|sync\w*|tds_version|timeout|trust\w*|uid)"
      R"(|user(?: ?(?:id|name))?|wsid)\s*=|\s*$)[^;]*)*)",
      std::regex::icase);
  return password;
}

/// What a driver says may repeat the connection string, or a part of it.
std::string withoutSecrets(std::string_view said, const std::string& connectionString) {
  std::string text(said);
  if (connectionString.size() > longestConnectionString) return text;
  for (std::sregex_iterator found(connectionString.begin(), connectionString.end(), secret()), none;
       found != none; ++found) {
    std::string_view value =
        trim(std::string_view(connectionString)
                 .substr(static_cast<std::size_t>(found->position() + found->length(1)),
                         static_cast<std::size_t>(found->length() - found->length(1))));
    // Its own braces, or one of the value that it stands in.
    if (value.starts_with('{')) value.remove_prefix(1);
    if (value.ends_with('}')) value.remove_suffix(1);
    for (std::size_t at = 0; !value.empty() && (at = text.find(value, at)) != std::string::npos;) {
      text.replace(at, value.size(), "***");
      at += 3;
    }
  }
  return text;
}

/// In a connection string, at the beginning of a value.
bool hasOpenBrace(std::string_view text) {
  static const std::regex closed(R"(\{(?:[^}]|\}\})*\})");
  static const std::regex opening(R"(=\s*\{)");
  if (text.size() > longestConnectionString) return false;
  const std::string rest = std::regex_replace(std::string(text), closed, "");
  return std::regex_search(rest, opening);
}

std::vector<Diagnostic> diagnosticsOf(const RuntimeError& error) {
  const auto* failure = dynamic_cast<const CannotConnect*>(&error);
  return failure == nullptr ? std::vector<Diagnostic>{} : failure->diagnostics();
}

std::string embeddedAdviceOr(std::string_view other, const RuntimeError& error) {
  const std::string_view advice = embeddedAdvice(diagnosticsOf(error));
  return std::string(advice.empty() ? other : advice);
}

std::string advice(const DatabaseChoice& choice, const RuntimeError& error) {
  if (!choice.path.empty()) {
    return embeddedAdviceOr("`opnimp demo-database PATH` makes an embedded database", error);
  }
  return connectionAdvice(choice.connectionString, diagnosticsOf(error));
}

std::shared_ptr<OwnConnection> connect(const DatabaseChoice& choice,
                                       const Surroundings& surroundings) {
  const bool isEmbedded = embeddedDialectIn(choice.connectionString) != nullptr;
  try {
    // A file is there at once, but may be locked for as long as --wait says.
    if (isEmbedded) return surroundings.openDatabase(choice.connectionString, choice.options);
    auto opened = openInTime(choice, surroundings);
    if (opened->hasDatabase()) return opened;
    throw CannotOpen("the database " + choice.shown +
                     " could not be opened: it names no database. Add Database=NAME to it");
  } catch (const RuntimeError& error) {
    if (isEmbedded && error.is(ErrorNumber::ProviderTimeout)) {
      throw RunEnded{"the database " + choice.shown + " did not answer in time (" +
                     withoutSecrets(withoutEnd(error.description()), choice.connectionString) +
                     "); --wait SECONDS or --lock-wait SECONDS gives it longer"};
    }
    // Only `shown` is printed: the connection string may contain a password.
    throw CannotOpen(
        "the database " + choice.shown + " could not be opened: " +
        withoutSecrets(withoutEnd(fileErrorText(choice.path, error)), choice.connectionString) +
        ". " + advice(choice, error));
  }
}

[[noreturn]] void cannotMake(const std::string& path, const std::string& why) {
  throw CannotOpen("the database " + path + " could not be made: " + why);
}

[[noreturn]] void cannotTake(const std::string& path, const std::string& why) {
  throw CannotOpen("OPNIMP_DATABASE: the file " + path + " " + why);
}

/// One in each line of a file.
std::vector<std::string> connectionStringsIn(const std::string& path, const std::string& bytes) {
  // A password that others can read is none.
  if (othersMayRead(path)) {
    cannotTake(path, "may be read by others than its owner; `" + commandToKeepPrivate(path) +
                         "` makes it yours only");
  }
  std::vector<std::string> strings;
  std::istringstream lines(bytes);
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (strings.empty() && line.starts_with(byteOrderMark)) line.erase(0, byteOrderMark.size());
    if (line.empty()) continue;
    if (line.size() > longestConnectionString || line.find('=') == std::string::npos) {
      cannotTake(
          path,
          std::string("holds a line that is no connection string, such as ").append(exampleString));
    }
    strings.push_back(std::move(line));
  }
  if (strings.empty())
    cannotTake(path, std::string("holds no connection string, such as ").append(exampleString));
  if (strings.size() > mostHosts) cannotTake(path, "names too many hosts: leave some out");
  return strings;
}

/// What --database would take.
std::vector<std::string> fromEnvironment(const std::string& value) {
  std::error_code error;
  if (!fs::is_regular_file(toPath(value), error)) return {value};
  NativeFileSystem files;
  try {
    // An embedded database may be of any size.
    std::string bytes(mostHosts * longestConnectionString + 1, '\0');
    bytes.resize(files.openInput(value)->read(bytes.data(), bytes.size()));
    if (bytes.starts_with("SQLite format 3")) return {value};
    return connectionStringsIn(value, bytes);
  } catch (const RuntimeError& failure) {
    cannotTake(value, "could not be read: " + failure.description());
  }
}

/// False when such a file is there already.
bool madeDatabase(const std::string& path) {
  try {
    return makeSampleCompany(path);
  } catch (const RuntimeError& error) {
    cannotMake(path, std::string(withoutEnd(error.description())) + ". " +
                         embeddedAdviceOr("Check the folder and its permissions", error));
  }
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

}  // namespace

std::vector<DatabaseChoice> chooseDatabases(const Arguments& arguments,
                                            const Surroundings& surroundings) {
  const std::vector<std::string>& options = arguments.databases;
  if (options.empty() && surroundings.database.empty()) {
    throw UsageError(
        "no database is named; use --database or the environment variable OPNIMP_DATABASE. "
        "`opnimp demo-database PATH` makes one to try it on");
  }
  std::vector<DatabaseChoice> hosts;
  for (const std::string& text :
       options.empty() ? fromEnvironment(surroundings.database) : options) {
    // It is not shown, as it may hold a password.
    if (text.find("://") != std::string::npos) {
      throw CannotOpen(
          std::string("what names the database is a URI; give a connection string such as ")
              .append(exampleString));
    }
    const CompanyDatabase database = companyDatabase(text);
    if (database.path.empty() && hasOpenBrace(text)) {
      throw CannotOpen(
          "what names the database has an opening brace without its closing one: "
          "put } behind that value");
    }
    const OdbcOptions opening = openingOptions(arguments);
    hosts.push_back(
        {database, database.path.empty() ? maskPasswords(database.connectionString) : database.path,
         opening, std::chrono::seconds(opening.loginTimeoutSeconds + 1)});
  }
  const auto embedded = std::ranges::find_if(hosts, [](const DatabaseChoice& host) {
    return embeddedDialectIn(host.connectionString) != nullptr;
  });
  if (hosts.size() == 1 || embedded == hosts.end()) return hosts;
  throw UsageError("the embedded database " + embedded->shown +
                   " has no further host: several --database are the servers of one database");
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

void makeDemoDatabase(const std::string& path) {
  // Here a file that exists is an error, because the user asked for a new one.
  if (madeDatabase(path)) return syncFolderOf(path);
  cannotMake(path, "there is such a file already. Choose another path, or remove it first");
}

std::string maskPasswords(std::string_view connectionString) {
  if (connectionString.size() > longestConnectionString) return "***";
  return std::regex_replace(std::string(connectionString), secret(), "$1***");
}

}  // namespace velk
