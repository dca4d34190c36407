#include "apps/opnimp/run/connection_advice.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "apps/opnimp/run/ado_string.h"
#include "platform/odbc/connection_string.h"

namespace velk {

namespace {

/// Where the machine has drivers, sources and files differs.
constexpr std::string_view bySystem([[maybe_unused]] std::string_view posix,
                                    [[maybe_unused]] std::string_view windows) {
#ifdef _WIN32
  return windows;
#else
  return posix;
#endif
}

constexpr std::string_view noSuchDriver =
    bySystem("Name a driver that is installed; `odbcinst -q -d` lists them",
             "Name a driver that is installed for programs with as many bits as this one; "
             "PowerShell's `Get-OdbcDriver` lists them");
constexpr std::string_view noSuchSource =
    bySystem("Name a data source that is set up; `odbcinst -q -s` lists them",
             "Name a data source that is set up for programs with as many bits as this one; "
             "PowerShell's `Get-OdbcDsn` lists them");
constexpr std::string_view noDriver = "Begin the connection string with Driver=NAME or DSN=NAME";
constexpr std::string_view adoString =
    "This connection string is ADO's; ODBC's names a driver instead of a provider: ";
constexpr std::string_view noEmbeddedDriver =
    bySystem("Install SQLite's ODBC driver; Debian's package of it is libsqliteodbc",
             "Install SQLite's ODBC driver, with as many bits as this program has; PowerShell's "
             "`Get-OdbcDriver` lists it as SQLite3 ODBC Driver then");
constexpr std::string_view unknownHost = "Correct Server=: no host of that name is known";
constexpr std::string_view noServer = "Correct Server= and Port=, or start the server there";
constexpr std::string_view slowServer =
    "Correct Server= and Port=, or start the server there; --connect-wait SECONDS gives it longer";
constexpr std::string_view noDatabase = "Correct Database=, or give the user the right to it";
constexpr std::string_view wrongLogin = "Correct the user and the password, UID= and PWD=";
constexpr std::string_view otherEncryption =
    "Ask for encryption as the server has it, or set it up there";
constexpr std::string_view postgresqlEncryption =
    "The server does not let the user in from here without encryption: add SSLmode=require, or "
    "SSLmode=verify-full to be sure of the server, or have its pg_hba.conf let him in";
constexpr std::string_view postgresqlCertificate = bySystem(
    "Put the certificate that the server's is signed with into ~/.postgresql/root.crt, or "
    "name a file that has it: pqopt={sslrootcert=FILE}",
    "Put the certificate that the server's is signed with into "
    "%APPDATA%\\postgresql\\root.crt, or name a file that has it: "
    "pqopt={sslrootcert=FILE}");
constexpr std::string_view mariadbCertificate =
    "Name a file in SSLCA= that has the certificate that the server's is signed with";
constexpr std::string_view otherName = "Name the server in Server= as its certificate does";
// The server denies access alike for a wrong password and for a lack of encryption.
constexpr std::string_view mariadbLogin =
    "Correct the user and the password, UID= and PWD=; if they are right, the server insists on "
    "encryption: add FORCETLS=1, or SSLVERIFY=1 and SSLCA=FILE to be sure of the server";
// In whatever language it says so.
constexpr std::string_view refusedByServer =
    "The server answers, and lets nobody in: correct UID=, PWD= and Database=, or look there "
    "whether the user may come from here, at the limit of connections, and whether it has started";
constexpr std::string_view noFile =
    "Correct Database=, the path of an embedded database; `opnimp demo-database PATH` makes one";
constexpr std::string_view tooMany = "Try later, or raise the server's limit of connections";
constexpr std::string_view anyOther =
    "Correct the connection string: Server=, Port=, Database=, UID=, PWD=";

struct Advice {
  std::string_view state;  // its beginning
  std::int32_t native;     // 0: any
  std::string_view part;   // of the driver's message, where one code stands for all that fails
  std::string_view text;
};

// The first row that fits one of the records counts.
constexpr auto advices = std::to_array<Advice>({
    {"01000", 0, "Can't open lib", noSuchDriver},
    {"IM003", 0, {}, noSuchDriver},
    {"IM002", 0, {}, noSuchSource},
    {"IM014", 0, {}, noSuchSource},  // it has another number of bits
    {"08001", 101, "does not match host name", otherName},
    {"08001", 101, "host name", unknownHost},
    {"08001", 101, "no encryption", postgresqlEncryption},
    {"08001", 101, "root certificate", postgresqlCertificate},
    {"08001", 101, "certificate verify failed", postgresqlCertificate},
    {"08001", 101, "SSL", otherEncryption},
    {"08001", 101, "too many", tooMany},
    {"08001", 101, "connection slots", tooMany},
    {"08001", 101, "password", wrongLogin},
    {"08001", 101, "FATAL:  role", wrongLogin},
    {"08001", 101, "FATAL:  database", noDatabase},
    // Only what the server itself says has two blanks behind its severity.
    {"08001", 101, ":  ", refusedByServer},
    {"HY000", 2005, {}, unknownHost},
    {"HY000", 2026, "does not support", otherEncryption},
    {"HY000", 2026, "Validation", otherName},
    {"HY000", 2026, {}, mariadbCertificate},
    {"28000", 1045, {}, mariadbLogin},
    {"08", 1040, {}, tooMany},
    {"42000", 1203, {}, tooMany},
    {"42000", 1226, {}, tooMany},
    {"42000", 1044, {}, noDatabase},
    {"42000", 1049, {}, noDatabase},
    {"42000", 4060, {}, noDatabase},
    {"01000", 20013, {}, unknownHost},
    {"28", 0, {}, wrongLogin},
    {"HY000", 2002, {}, noServer},
    {"HY000", 2003, {}, noServer},
    {"08", 0, "connect failed", noFile},
    {"08", 0, {}, noServer},
    {"HYT", 0, {}, slowServer},
});

// What a string has that names no driver, and was written for another interface.
constexpr auto adoKeywords =
    std::to_array<std::string_view>({"provider", "data source", "initial catalog",
                                     "integrated security", "persist security info", "user id"});

// By these the string has asked for it.
bool isEncrypted(std::string_view connectionString) {
  return hasKeyword(connectionString, "forcetls", "1") ||
         hasKeyword(connectionString, "sslverify", "1");
}

bool fits(const Advice& advice, const Diagnostic& said) {
  return said.state.starts_with(advice.state) &&
         (advice.native == 0 || advice.native == said.native) &&
         said.message.find(advice.part) != std::string::npos;
}

}  // namespace

std::string connectionAdvice(std::string_view connectionString,
                             const std::vector<Diagnostic>& said) {
  const auto names = [&](std::string_view name) { return hasKeyword(connectionString, name); };
  const bool isOdbc = std::ranges::any_of(std::array{"driver", "dsn", "filedsn"}, names);
  if (names(adoKeywords.front()) || (!isOdbc && std::ranges::any_of(adoKeywords, names))) {
    return std::string(adoString) + odbcEquivalent(connectionString);
  }
  if (!isOdbc) return std::string(noDriver);
  for (const Advice& advice : advices) {
    const auto fitting = [&](const Diagnostic& one) { return fits(advice, one); };
    if (std::ranges::none_of(said, fitting)) continue;
    // Windows has one state for both.
    if (advice.text == noSuchSource && names("driver")) return std::string(noSuchDriver);
    const bool isLogin = advice.text == mariadbLogin && isEncrypted(connectionString);
    return std::string(isLogin ? wrongLogin : advice.text);
  }
  return std::string(anyOther);
}

std::string_view embeddedAdvice(const std::vector<Diagnostic>& said) {
  constexpr std::array missing{"IM002", "IM003", "Can't open lib"};
  const auto tellsMissing = [&](const Diagnostic& one) {
    return std::ranges::any_of(missing, [&](std::string_view sign) {
      return one.state == sign || one.message.find(sign) != std::string::npos;
    });
  };
  return std::ranges::any_of(said, tellsMissing) ? noEmbeddedDriver : std::string_view();
}

}  // namespace velk
