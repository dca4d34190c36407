#include "platform/odbc/diagnostics.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

#include "base/text.h"

namespace velk {
namespace {

// The interface cannot tell of a longer one.
constexpr SQLSMALLINT messageCapacity = std::numeric_limits<SQLSMALLINT>::max();
constexpr SQLSMALLINT longestMessage = messageCapacity - 1;  // before the final NUL
constexpr SQLSMALLINT maxRecords = 64;  // a driver that never says "no more" must not hang us

// "[Vendor][Driver][Server]text": users are shown the text only, and in one line, as the error log
// has a line for each error.
std::string shownText(std::string_view message) {
  while (!message.empty() && message.front() == '[') {
    const std::size_t end = message.find(']');
    if (end == std::string_view::npos) break;
    message.remove_prefix(end + 1);
  }
  std::string text(message);
  std::ranges::replace_if(
      text, [](char c) { return c == '\r' || c == '\n' || c == '\t'; }, ' ');
  return std::string(trim(text));
}

ErrorNumber numberOf(const Diagnostic& diagnostic) {
  struct Rule {
    std::string_view state;  // its beginning
    ErrorNumber number;
    std::int32_t native = 0;  // 0: any
  };
  // The first rule that fits counts, so that 42S02 and 42501 come before 42. SQL Server reports a
  // missing permission under the general state 42000, by message number.
  static constexpr Rule rules[] = {
      {"HYT00", ErrorNumber::ProviderTimeout},   {"HYT01", ErrorNumber::ProviderTimeout},
      {"23", ErrorNumber::IntegrityViolation},   {"22001", ErrorNumber::DataTruncated},
      {"42S02", ErrorNumber::NoSuchTable},       {"28000", ErrorNumber::LoginFailed},
      {"42501", ErrorNumber::NoPermission},      {"42000", ErrorNumber::NoPermission, 229},
      {"42000", ErrorNumber::NoPermission, 230}, {"42000", ErrorNumber::NoPermission, 262},
      {"42000", ErrorNumber::NoPermission, 297}, {"42000", ErrorNumber::NoPermission, 300},
      {"42", ErrorNumber::CommandErrors},
  };
  const auto* const found = std::ranges::find_if(rules, [&](const Rule& rule) {
    return diagnostic.state.starts_with(rule.state) &&
           (rule.native == 0 || rule.native == diagnostic.native);
  });
  return found == std::end(rules) ? ErrorNumber::ProviderFailure : found->number;
}

bool readRecord(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, Diagnostic& to) {
  // Five characters and the final NUL.
  std::array<char16_t, 6> state{};
  std::vector<char16_t> message(messageCapacity);
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  if (!SQL_SUCCEEDED(SQLGetDiagRecW(type, handle, record, wideText(state.data()), &native,
                                    wideText(message.data()), messageCapacity, &length))) {
    return false;
  }
  // The length is the whole message's, even if only a part of it fitted.
  to = {toUtf8({state.data(), 5}), native,
        toUtf8({message.data(), static_cast<std::size_t>(std::min(length, longestMessage))})};
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
  // ODBC ranks the records of a failure: the first matters most.
  const Diagnostic& first = diagnostics.front();
  return RuntimeError(numberOf(first), shownText(first.message));
}

// Class 08 is about the connection itself. After class 24 it refuses everything, for ever.
bool tellsConnectionLost(const std::vector<Diagnostic>& diagnostics) {
  return std::ranges::any_of(diagnostics, [](const Diagnostic& diagnostic) {
    return diagnostic.state.starts_with("08") || diagnostic.state.starts_with("24");
  });
}

}  // namespace velk
