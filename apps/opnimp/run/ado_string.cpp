#include "apps/opnimp/run/ado_string.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "base/text.h"

namespace velk {

namespace {

using KeywordPair = std::pair<std::string_view, std::string_view>;

/// As they are written, in lower case and without blanks.
constexpr std::array<KeywordPair, 18> keywords{
    {{"datasource", "Server"},
     {"server", "Server"},
     {"address", "Server"},
     {"addr", "Server"},
     {"networkaddress", "Server"},
     {"initialcatalog", "Database"},
     {"database", "Database"},
     {"userid", "UID"},
     {"user", "UID"},
     {"uid", "UID"},
     {"password", "PWD"},
     {"pwd", "PWD"},
     {"integratedsecurity", "Trusted_Connection"},
     {"trusted_connection", "Trusted_Connection"},
     {"encrypt", "Encrypt"},
     {"useencryptionfordata", "Encrypt"},
     {"trustservercertificate", "TrustServerCertificate"},
     {"dsn", "DSN"}}};

/// How the names of SQL Server's providers begin.
constexpr std::array<std::string_view, 3> serverProviders{"sqloledb", "sqlncli", "msoledbsql"};

std::string plain(std::string_view keyword) {
  std::string lower = lowerAscii(keyword);
  std::erase(lower, ' ');
  return lower;
}

/// Takes the value that ends at a semicolon, which may stand in quotes.
std::string takeValue(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  const char quote = rest.empty() ? '\0' : rest.front();
  std::string value;
  if (quote == '"' || quote == '\'') {
    for (rest.remove_prefix(1); !rest.empty(); rest.remove_prefix(1)) {
      if (rest.front() == quote) {
        rest.remove_prefix(1);
        // A doubled one stands for itself.
        if (rest.empty() || rest.front() != quote) break;
      }
      value += rest.front();
    }
  }
  const std::size_t end = std::min(rest.find(';'), rest.size());
  value += trim(rest.substr(0, end));
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return value;
}

std::string odbcValue(std::string_view keyword, const std::string& value) {
  // Nobody needs to see it; and a quote that was never closed may have taken it into another value.
  if (keyword == "PWD" || value.find('=') != std::string::npos) return "***";
  const std::string lower = lowerAscii(value);
  if (lower == "sspi" || lower == "true") return "yes";
  if (lower == "false") return "no";
  if (value.find_first_of(";{}") == std::string::npos) return value;
  std::string braced = "{";
  for (const char c : value) braced.append(c == '}' ? 2 : 1, c);
  return braced + '}';
}

std::string driverFor(const std::string& provider) {
  const std::string lower = lowerAscii(provider);
  const bool isServer = std::ranges::any_of(
      serverProviders, [&](std::string_view name) { return lower.starts_with(name); });
  return isServer ? "Driver={ODBC Driver 18 for SQL Server}" : "Driver=NAME";
}

}  // namespace

std::string odbcEquivalent(std::string_view adoString) {
  std::string driver = "Driver=NAME";
  std::string others;
  bool hasSource = false;
  for (std::string_view rest = adoString; !rest.empty();) {
    const std::size_t equals = rest.find('=');
    if (equals == std::string_view::npos) break;
    const std::string name = plain(rest.substr(0, equals));
    rest.remove_prefix(equals + 1);
    const std::string value = takeValue(rest);
    if (name == "provider") driver = driverFor(value);
    const auto* const known = std::ranges::find(keywords, name, &KeywordPair::first);
    if (known == keywords.end() || value.empty()) continue;
    hasSource = hasSource || known->second == "DSN";
    others.append(";").append(known->second).append("=");
    others += odbcValue(known->second, value);
  }
  return hasSource ? others.substr(1) : driver + others;
}

}  // namespace velk
