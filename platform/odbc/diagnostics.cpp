#include "platform/odbc/diagnostics.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace velk {
namespace {

constexpr std::size_t messageCapacity = 1024;
constexpr SQLSMALLINT maxRecords = 64;  // a driver that never says "no more" must not hang us

std::string narrow(const char16_t* text, std::size_t length) {
  return toUtf8(std::u16string_view(text, length));
}

// "[Vendor][Driver][Server]text": users are shown the text only.
std::string_view withoutLayerNames(std::string_view message) {
  while (!message.empty() && message.front() == '[') {
    const std::size_t end = message.find(']');
    if (end == std::string_view::npos) break;
    message.remove_prefix(end + 1);
  }
  return trim(message);
}

// SQL Server reports a missing permission under the general state 42000, by message number.
bool isPermissionMessage(const Diagnostic& diagnostic) {
  constexpr std::array<std::int32_t, 5> numbers{229, 230, 262, 297, 300};
  return diagnostic.state == "42000" &&
         std::find(numbers.begin(), numbers.end(), diagnostic.native) != numbers.end();
}

ErrorNumber numberOf(const Diagnostic& diagnostic) {
  struct Rule {
    std::string_view prefix;
    ErrorNumber number;
  };
  // The first prefix that fits counts, so that 42S02 and 42501 come before 42.
  static constexpr Rule rules[] = {
      {"HYT00", ErrorNumber::ProviderTimeout}, {"HYT01", ErrorNumber::ProviderTimeout},
      {"23", ErrorNumber::IntegrityViolation}, {"22001", ErrorNumber::DataTruncated},
      {"42S02", ErrorNumber::NoSuchTable},     {"28000", ErrorNumber::LoginFailed},
      {"42501", ErrorNumber::NoPermission},    {"42", ErrorNumber::CommandErrors},
  };
  if (isPermissionMessage(diagnostic)) return ErrorNumber::NoPermission;
  for (const Rule& rule : rules) {
    if (diagnostic.state.starts_with(rule.prefix)) return rule.number;
  }
  return ErrorNumber::ProviderFailure;
}

bool readRecord(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, Diagnostic& to) {
  std::array<char16_t, 6> state{};
  std::vector<char16_t> message(messageCapacity);
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const auto read = [&] {
    return SQLGetDiagRecW(type, handle, record, wideText(state.data()), &native,
                          wideText(message.data()), static_cast<SQLSMALLINT>(message.size()),
                          &length);
  };
  if (!SQL_SUCCEEDED(read())) return false;
  // The length is the whole message's, even if only its beginning fitted.
  if (static_cast<std::size_t>(length) >= message.size()) {
    message.resize(static_cast<std::size_t>(length) + 1);
    if (!SQL_SUCCEEDED(read())) return false;
  }
  const std::size_t kept = std::min(static_cast<std::size_t>(length), message.size() - 1);
  to = {narrow(state.data(), 5), native, narrow(message.data(), kept)};
  return true;
}

}  // namespace

std::vector<Diagnostic> readDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::vector<Diagnostic> all;
  if (handle == nullptr) return all;
  Diagnostic diagnostic;
  for (SQLSMALLINT i = 1; i <= maxRecords && readRecord(handleType, handle, i, diagnostic); ++i) {
    all.push_back(diagnostic);
  }
  return all;
}

RuntimeError toRuntimeError(const std::vector<Diagnostic>& diagnostics) {
  if (diagnostics.empty()) {
    return RuntimeError(ErrorNumber::ProviderFailure, "The driver gave no reason for the failure.");
  }
  const Diagnostic& first = diagnostics.front();
  return RuntimeError(numberOf(first), std::string(withoutLayerNames(first.message)));
}

bool tellsConnectionLost(const std::vector<Diagnostic>& diagnostics) {
  return std::any_of(diagnostics.begin(), diagnostics.end(),
                     [](const Diagnostic& d) { return d.state.starts_with("08"); });
}

}  // namespace velk
