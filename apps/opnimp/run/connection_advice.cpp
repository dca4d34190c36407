#include "apps/opnimp/run/connection_advice.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/text.h"

namespace velk {

namespace {

constexpr std::string_view driverAdvice =
    "Name a driver that is installed; `odbcinst -q -d` lists them";
constexpr std::string_view sourceAdvice =
    "Name a data source that is set up; `odbcinst -q -s` lists them";
constexpr std::string_view noDriverAdvice =
    "Begin the connection string with Driver=NAME or DSN=NAME";
constexpr std::string_view adoAdvice =
    "This connection string is ADO's; ODBC's names a driver instead of a provider: "
    "Driver=NAME;Server=HOST;Database=NAME;UID=USER;PWD=PASSWORD";
constexpr std::string_view hostAdvice = "Correct Server=: no host of that name is known";
constexpr std::string_view serverAdvice = "Correct Server= and Port=, or start the server there";
constexpr std::string_view databaseAdvice = "Correct Database=, or give the user the right to it";
constexpr std::string_view loginAdvice = "Correct the user and the password, UID= and PWD=";
constexpr std::string_view encryptionAdvice =
    "Ask for encryption as the server has it, or set it up there";
constexpr std::string_view limitAdvice = "Try later, or raise the server's limit of connections";
constexpr std::string_view anyAdvice =
    "Correct the connection string: Server=, Port=, Database=, UID=, PWD=";

struct Advice {
  std::string_view state;  // its beginning
  std::int32_t native;     // 0: any
  std::string_view part;   // of the driver's message, where one code stands for all that fails
  std::string_view text;
};

// The first row that fits one of the records counts.
constexpr auto advices = std::to_array<Advice>({
    {"01000", 0, "Can't open lib", driverAdvice},
    {"IM003", 0, {}, driverAdvice},
    {"IM002", 0, {}, sourceAdvice},
    {"08001", 101, "host name", hostAdvice},
    {"08001", 101, "SSL", encryptionAdvice},
    {"08001", 101, "too many", limitAdvice},
    {"08001", 101, "connection slots", limitAdvice},
    {"08001", 101, "password", loginAdvice},
    {"08001", 101, "FATAL:  role", loginAdvice},
    {"08001", 101, "FATAL:  database", databaseAdvice},
    {"HY000", 2005, {}, hostAdvice},
    {"HY000", 2026, {}, encryptionAdvice},
    {"08", 1040, {}, limitAdvice},
    {"42000", 1203, {}, limitAdvice},
    {"42000", 1226, {}, limitAdvice},
    {"42000", 1044, {}, databaseAdvice},
    {"42000", 1049, {}, databaseAdvice},
    {"42000", 4060, {}, databaseAdvice},
    {"01000", 20013, {}, hostAdvice},
    {"28", 0, {}, loginAdvice},
    {"HY000", 2002, {}, serverAdvice},
    {"HY000", 2003, {}, serverAdvice},
    {"08", 0, {}, serverAdvice},
    {"HYT", 0, {}, serverAdvice},
});

bool fits(const Advice& advice, const Diagnostic& said) {
  return said.state.starts_with(advice.state) &&
         (advice.native == 0 || advice.native == said.native) &&
         said.message.find(advice.part) != std::string::npos;
}

bool hasKeyword(const std::string& lowered, std::string_view name) {
  return (";" + lowered).find(std::string(";").append(name).append("=")) != std::string::npos;
}

}  // namespace

std::string_view connectionAdvice(std::string_view connectionString,
                                  const std::vector<Diagnostic>& said) {
  const std::string lowered = lowerAscii(connectionString);
  if (hasKeyword(lowered, "provider")) return adoAdvice;
  const auto names = [&](std::string_view name) { return hasKeyword(lowered, name); };
  if (std::ranges::none_of(std::array{"driver", "dsn", "filedsn"}, names)) return noDriverAdvice;
  for (const Advice& advice : advices) {
    const auto fitting = [&](const Diagnostic& one) { return fits(advice, one); };
    if (std::ranges::any_of(said, fitting)) return advice.text;
  }
  return anyAdvice;
}

}  // namespace velk
