#include "apps/opnimp/warnings/warnings_text.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>

#include "base/text.h"
#include "mapping/csv_table.h"

namespace velk {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t headerLine = 1;

std::optional<WarningId> checkMark(std::string_view bytes) {
  if (bytes.starts_with(utf8Mark)) return WarningId::ByteOrderMark;
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return WarningId::Utf16;
  return std::nullopt;
}

/// A byte with its neighbours; at the ends of the file these are NUL.
struct Byte {
  char before;
  char value;
  char after;
};

struct ByteCheck {
  WarningId warning;
  bool (*applies)(const Byte& byte);
};

constexpr ByteCheck anyByte[] = {
    {WarningId::BareLineFeeds,
     [](const Byte& byte) { return byte.value == '\n' && byte.before != '\r'; }},
    {WarningId::BareCarriageReturns,
     [](const Byte& byte) { return byte.value == '\r' && byte.after != '\n'; }}};

constexpr ByteCheck undefinedByte{
    WarningId::UndefinedBytes, [](const Byte& byte) {
      return std::string_view("\x81\x8D\x8F\x90\x9D").find(byte.value) != std::string_view::npos;
    }};

// Finding the line means reading the file from its start: only for findings that are listed.
std::size_t lineAt(std::string_view bytes, std::size_t position) {
  return static_cast<std::size_t>(std::ranges::count(bytes.substr(0, position), '\n')) + 1;
}

void warnIf(std::optional<WarningId> warning, std::vector<Warning>& warnings) {
  if (warning) addWarning(warnings, *warning, headerLine);
}

void warnOf(const ByteCheck& check, std::string_view bytes, std::vector<Warning>& warnings) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const char before = at > 0 ? bytes[at - 1] : '\0';
    const char after = at + 1 < bytes.size() ? bytes[at + 1] : '\0';
    if (!check.applies({before, bytes[at], after})) continue;
    addWarning(warnings, check.warning, count++ < mostWarningLines ? lineAt(bytes, at) : wholeFile);
  }
}

void warnOfBytes(std::string_view bytes, std::vector<Warning>& warnings) {
  warnIf(checkMark(bytes), warnings);
  for (const ByteCheck& check : anyByte) warnOf(check, bytes, warnings);
  if (!isAscii(bytes) && !isUtf8(bytes)) warnOf(undefinedByte, bytes, warnings);
}

std::optional<WarningId> checkSeparator(std::string_view header) {
  const auto has = [&](char c) { return std::ranges::count(header, c) > 0; };
  // With a comma there is a separator, and any other sign may be part of a title.
  if (has(',')) return std::nullopt;
  if (has(';')) return WarningId::SemicolonSeparated;
  if (has('\t')) return WarningId::TabSeparated;
  return std::nullopt;
}

void warnOfTitles(std::string_view header, std::vector<Warning>& warnings) {
  if (countFields(header) > maxColumns) return;  // such a file is not viewed anyway
  std::set<std::string, std::less<>> seen;
  for (const std::string& title : splitLine(header, QuotedComma::Drop)) {
    const std::string name = lowerAscii(trim(title));
    if (name.starts_with('"')) addWarning(warnings, WarningId::QuotedTitles, headerLine);
    if (name.empty()) {
      addWarning(warnings, WarningId::BlankTitles, headerLine);
    } else if (!seen.insert(name).second) {
      addWarning(warnings, WarningId::DuplicateTitles, headerLine);
    }
  }
}

}  // namespace

// What is no UTF-8 comes back as U+FFFD. The mark is no letter.
bool isUtf8(std::string_view bytes) {
  const std::string_view text = bytes.substr(bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0);
  return !isAscii(text) && toUtf8(toUtf16(text)) == text;
}

void warnOfText(const CsvRecords& input, const ImportKind& kind, std::vector<Warning>& warnings) {
  warnOfBytes(input.bytes(), warnings);
  if (input.count() == 0) addWarning(warnings, WarningId::NoRecords, wholeFile);
  if (input.count() > kind.largestRecordCount) {
    addWarning(warnings, WarningId::TooManyRecords, wholeFile);
  }
  warnIf(checkSeparator(input.header()), warnings);
  warnOfTitles(input.header(), warnings);
}

}  // namespace velk
