#include "apps/opnimp/warnings/warnings.h"

#include <algorithm>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"

namespace velk {

namespace {

// A row may be of any length, and these texts stand in the middle of sentences.
constexpr std::size_t longestText = 120;
constexpr std::string_view acceptsAll = "all";

// Several findings of one line count once.
Warning& countedWarning(std::vector<Warning>& warnings, WarningId id, std::size_t line,
                        const std::string& field) {
  auto found = std::ranges::find(warnings, id, &Warning::id);
  if (found == warnings.end()) found = warnings.insert(found, Warning{id, 0, 0, {}, {}, {}});
  const bool isNamed = field.empty() || std::ranges::count(found->fields, field) > 0;
  if (!isNamed) found->fields.push_back(field);
  if (line == wholeFile || line != found->lastLine) ++found->count;
  if (line != wholeFile && line != found->lastLine && found->lines.size() < mostWarningLines) {
    found->lines.push_back(line);
  }
  found->lastLine = line;
  return *found;
}

[[noreturn]] void refuseCode(const std::string& code) {
  std::string text = "--accept: there is no harmful warning \"" + code + "\"; there is: ";
  for (const WarningText& warning : allWarnings()) {
    if (warning.harmful) text.append(warning.code).append(", ");
  }
  throw UsageError(text.append(acceptsAll));
}

}  // namespace

void addWarning(std::vector<Warning>& warnings, WarningId id, std::size_t line,
                const std::string& field) {
  countedWarning(warnings, id, line, field);
}

void addWarning(std::vector<Warning>& warnings, WarningId id, Misreading reading) {
  countedWarning(warnings, id, reading.line, reading.field).readings.push_back(std::move(reading));
}

std::vector<std::string_view> notAccepted(std::span<const Warning> warnings,
                                          std::span<const std::string> accepted) {
  std::vector<std::string_view> codes;
  for (const Warning& warning : warnings) {
    const bool taken = std::ranges::any_of(accepted, [&](const std::string& code) {
      return code == acceptsAll || code == warning.code();
    });
    if (warning.harmful() && !taken) codes.push_back(warning.code());
  }
  return codes;
}

void checkAccepted(std::span<const std::string> accepted) {
  for (const std::string& code : accepted) {
    const auto is = [&](const WarningText& warning) {
      return warning.harmful && warning.code == code;
    };
    if (code != acceptsAll && std::ranges::none_of(allWarnings(), is)) refuseCode(code);
  }
}

std::string sentenceOf(const Misreading& reading) {
  const std::string written = "\"" + cutTo(reading.text, longestText) + "\"";
  return (reading.field.empty() ? written : reading.field + " " + written) + " is read as " +
         cutTo(reading.effect(), longestText);
}

}  // namespace velk
