#include "apps/opnimp/warnings/warnings_text.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "base/text.h"
#include "mapping/csv_table.h"

namespace velk {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view separatorMark = "sep=";

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

void warnIf(std::optional<WarningId> warning, std::size_t line, std::vector<Warning>& warnings) {
  if (warning) addWarning(warnings, *warning, line);
}

void warnOf(const ByteCheck& check, const CsvRecords& input, std::vector<Warning>& warnings) {
  const std::string_view bytes = input.bytes();
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const char before = at > 0 ? bytes[at - 1] : '\0';
    const char after = at + 1 < bytes.size() ? bytes[at + 1] : '\0';
    if (!check.applies({before, bytes[at], after})) continue;
    addWarning(warnings, check.warning, input.lineAt(at));
  }
}

void warnOfBytes(const CsvRecords& input, std::vector<Warning>& warnings) {
  const std::string_view bytes = input.bytes();
  warnIf(checkMark(bytes), input.headerLine(), warnings);
  for (const ByteCheck& check : anyByte) warnOf(check, input, warnings);
  if (!isAscii(bytes) && !isUtf8(bytes)) warnOf(undefinedByte, input, warnings);
}

std::optional<WarningId> checkSeparator(std::string_view header) {
  const auto has = [&](char c) { return std::ranges::count(header, c) > 0; };
  // With a comma there is a separator, and any other sign may be part of a title.
  if (has(',')) return std::nullopt;
  if (has(';')) return WarningId::SemicolonSeparated;
  if (has('\t')) return WarningId::TabSeparated;
  if (has('|')) return WarningId::BarSeparated;
  return std::nullopt;
}

void warnOfTitles(const CsvRecords& input, std::vector<Warning>& warnings) {
  const std::string_view header = input.header();
  if (countFields(header) > maxColumns) return;  // such a file is not viewed anyway
  std::set<std::string, std::less<>> seen;
  std::size_t column = 0;
  for (const std::string& title : splitLine(header, QuotedComma::Drop)) {
    const std::string name = lowerAscii(trim(title));
    const std::string shown = std::string(trim(title)) + " (#" + std::to_string(++column) + ")";
    const auto warn = [&](WarningId id) {
      addWarning(warnings, id, input.headerLine(), std::string(trim(shown)));
    };
    if (name.starts_with('"')) warn(WarningId::QuotedTitles);
    if (name.empty()) {
      warn(WarningId::BlankTitles);
    } else if (!seen.insert(name).second) {
      warn(WarningId::DuplicateTitles);
    }
  }
}

/// Lines that end in none of the pairs that end one: the whole file is its first line.
std::optional<WarningId> checkLineEnds(std::string_view bytes) {
  if (bytes.find("\r\n") != std::string_view::npos) return std::nullopt;
  if (bytes.find('\n') != std::string_view::npos) return WarningId::BareLineFeeds;
  if (bytes.find('\r') != std::string_view::npos) return WarningId::BareCarriageReturns;
  return std::nullopt;
}

/// Whether a line looks like the titles of a file of this kind.
bool holdsTitles(std::string_view line, const ImportKind& kind,
                 const std::vector<FieldMapping>& mapping) {
  // A file with another number of columns was not viewed, and has no mapping.
  if (mapping.empty()) return kind.columns != 0 && countFields(line) == kind.columns;
  const std::vector<std::string> titles = splitLine(line, QuotedComma::Drop);
  const auto isTitle = [&](std::size_t field) {
    return std::ranges::any_of(titles, [&](const std::string& title) {
      return equalsIgnoringCase(trim(title), trim(mapping.at(field).field));
    });
  };
  return std::ranges::all_of(kind.mandatory, isTitle);
}

/// Its line; empty if the first lines hold no titles, or the very first one does.
std::optional<std::size_t> lineOfTitles(const CsvRecords& input, const ImportKind& kind,
                                        const std::vector<FieldMapping>& mapping) {
  constexpr std::size_t looked = 20;
  if (holdsTitles(input.header(), kind, mapping)) return std::nullopt;
  for (std::size_t record = 0; record < std::min(looked, input.count()); ++record) {
    if (holdsTitles(input.bytesOf(record), kind, mapping)) return input.place(record).line;
  }
  return std::nullopt;
}

}  // namespace

// What is no UTF-8 comes back as U+FFFD. The mark is no letter.
bool isUtf8(std::string_view bytes) {
  const std::string_view text = bytes.substr(bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0);
  return !isAscii(text) && toUtf8(toUtf16(text)) == text;
}

// From what makes the file unreadable to what only hides its titles.
std::optional<Warning> faultOfFile(const CsvRecords& input, const ImportKind& kind,
                                   const std::vector<FieldMapping>& mapping) {
  std::vector<Warning> fault;
  const bool isRead =
      input.count() > 0 && !mapping.empty() && unmappedFields(mapping, kind.mandatory).empty();
  if (isRead) return std::nullopt;
  const auto mark = checkMark(input.bytes());
  const auto ends = checkLineEnds(input.bytes());
  if (mark == WarningId::Utf16) {
    addWarning(fault, *mark, wholeFile);
  } else if (ends) {
    addWarning(fault, *ends, wholeFile);
  } else if (lowerAscii(input.header().substr(0, separatorMark.size())) == separatorMark) {
    addWarning(fault, WarningId::SeparatorLine, input.headerLine());
  } else if (const auto separator = checkSeparator(input.header())) {
    addWarning(fault, *separator, input.headerLine());
  } else if (const auto line = lineOfTitles(input, kind, mapping)) {
    addWarning(fault, WarningId::LinesAboveTitles, *line);
  }
  return fault.empty() ? std::nullopt : std::optional(std::move(fault.front()));
}

void warnOfText(const CsvRecords& input, const ImportKind& kind, std::vector<Warning>& warnings) {
  warnOfBytes(input, warnings);
  if (input.count() == 0) addWarning(warnings, WarningId::NoRecords, wholeFile);
  if (input.count() > kind.largestRecordCount) {
    addWarning(warnings, WarningId::TooManyRecords, wholeFile);
  }
  warnIf(checkSeparator(input.header()), input.headerLine(), warnings);
  warnOfTitles(input, warnings);
}

}  // namespace velk
