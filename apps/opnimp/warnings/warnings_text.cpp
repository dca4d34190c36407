#include "apps/opnimp/warnings/warnings_text.h"

#include <algorithm>
#include <set>
#include <string>

#include "base/text.h"
#include "mapping/csv_table.h"

namespace velk {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t headerLine = 1;

WarningText checkMark(std::string_view bytes) {
  if (bytes.starts_with(utf8Mark))
    return {"byte-order-mark",
            "The file begins with a byte-order mark, which becomes part of the first title: that "
            "column is not mapped by its name. Save the file without it, or use --map with #1."};
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    return {"utf-16",
            "The file is in UTF-16, of which no title or value is understood. Save it as "
            "windows-1252 text."};
  return {};
}

/// A byte with its neighbours; at the ends of the file these are NUL.
struct Byte {
  char before;
  char value;
  char after;
};

struct ByteCheck {
  WarningText warning;
  bool (*applies)(const Byte& byte);
};

constexpr ByteCheck anyByte[] = {
    {{"bare-line-feeds",
      "Lines end at carriage return + line feed only: what follows a bare line feed belongs "
      "to the same record. Save the file with Windows line ends."},
     [](const Byte& byte) { return byte.value == '\n' && byte.before != '\r'; }},
    {{"bare-carriage-returns",
      "Lines end at carriage return + line feed only: a bare carriage return is part of a value. "
      "Save the file with Windows line ends."},
     [](const Byte& byte) { return byte.value == '\r' && byte.after != '\n'; }},
    {{"nul-bytes", "A NUL byte splits a field in two. The file may be damaged, or be in UTF-16."},
     [](const Byte& byte) { return byte.value == '\0'; }},
};

constexpr ByteCheck undefinedByte{
    {"undefined-bytes",
     "The file holds bytes that stand for no character of the code page (windows-1252)."},
    [](const Byte& byte) {
      return std::string_view("\x81\x8D\x8F\x90\x9D").find(byte.value) != std::string_view::npos;
    }};

constexpr WarningText readAsOther{
    "utf-8",
    "The file looks like UTF-8, but is read as windows-1252: letters beyond ASCII come out as two "
    "or three others. Save it as windows-1252 (\"ANSI\")."};

constexpr WarningText noRecords{"no-records", "The file has no records behind its first line."};
constexpr WarningText tooManyRecords{
    "too-many-records", "More records than can be imported in one go. Split the file."};
constexpr WarningText quotedTitle{
    "quoted-titles",
    "A title keeps its quotes and so matches no field by name. Remove them, or use --map."};
constexpr WarningText blankTitle{"blank-titles",
                                 "A column without a title matches no field; use --map with #N."};
constexpr WarningText duplicateTitle{
    "duplicate-titles",
    "A title stands twice: of two columns that match a field the later is used."};
constexpr WarningText shortLine{
    "short-lines", "A line has fewer fields than there are titles: the missing ones are empty."};
constexpr WarningText longLine{
    "long-lines",
    "A line has more fields than there are titles: the further ones are left out, and values may "
    "stand in wrong columns. An amount such as 1,250.00 needs quotes, or no comma."};
constexpr WarningText quotedComma{
    "quoted-commas",
    "A comma inside quotes is dropped from the value: \"Smith, John\" becomes Smith John."};
constexpr WarningText lineBreak{
    "line-break-in-quotes",
    "A quoted value seems to go on in the next line. A line break always ends a record: the two "
    "halves are two records."};
constexpr WarningText missingQuote{
    "unbalanced-quotes",
    "A quote is missing: the commas behind it do not separate, so that the rest of the line is "
    "one value."};

// Finding the line means reading the file from its start: only for findings that are listed.
std::size_t lineAt(std::string_view bytes, std::size_t position) {
  return static_cast<std::size_t>(std::ranges::count(bytes.substr(0, position), '\n')) + 1;
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
  addWarning(warnings, checkMark(bytes), headerLine);
  for (const ByteCheck& check : anyByte) warnOf(check, bytes, warnings);
  // The mark is no letter.
  const std::string_view text = bytes.substr(bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0);
  if (isAscii(text)) return;
  // What is no UTF-8 comes back as U+FFFD.
  if (toUtf8(toUtf16(text)) == text) {
    addWarning(warnings, readAsOther, wholeFile);
  } else {
    warnOf(undefinedByte, bytes, warnings);
  }
}

WarningText checkSeparator(std::string_view header) {
  const auto has = [&](char c) { return std::ranges::count(header, c) > 0; };
  // With a comma there is a separator, and any other sign may be part of a title.
  if (has(',')) return {};
  if (has(';'))
    return {"semicolon-separated",
            "The titles are separated by semicolons; only commas separate. Save the file with "
            "commas."};
  if (has('\t'))
    return {"tab-separated",
            "The titles are separated by tabs; only commas separate. Save the file with commas."};
  return {};
}

// Doubled quotes count twice and so change nothing.
bool endsInsideQuotes(std::string_view line) {
  return std::ranges::count(line, '"') % 2 != 0;
}

bool hasQuotedComma(std::string_view line) {
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if (c == ',' && quoted) return true;
  }
  return false;
}

void warnOfTitles(std::string_view header, std::vector<Warning>& warnings) {
  if (countFields(header) > maxColumns) return;  // such a file is not viewed anyway
  std::set<std::string, std::less<>> seen;
  for (const std::string& title : splitLine(header, QuotedComma::Drop)) {
    const std::string name = lowerAscii(trim(title));
    if (name.starts_with('"')) addWarning(warnings, quotedTitle, headerLine);
    if (name.empty()) {
      addWarning(warnings, blankTitle, headerLine);
    } else if (!seen.insert(name).second) {
      addWarning(warnings, duplicateTitle, headerLine);
    }
  }
}

void warnOfRagged(const CsvRecords& input, std::vector<Warning>& warnings) {
  // Quotes count in the titles as in the records: both are separated by one rule.
  const std::size_t columns = countFields(input.header());
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t fields = countFields(input.bytesOf(record));
    if (fields == columns) continue;
    addWarning(warnings, fields < columns ? shortLine : longLine, input.place(record).line);
  }
}

void warnOfQuotes(const CsvRecords& input, std::vector<Warning>& warnings) {
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t line = input.place(record).line;
    if (hasQuotedComma(input.bytesOf(record))) addWarning(warnings, quotedComma, line);
    if (!endsInsideQuotes(input.bytesOf(record))) continue;
    // An open quote here and one more in the next record: most likely one value with a line break.
    const bool goesOn = record + 1 < input.count() && endsInsideQuotes(input.bytesOf(record + 1));
    addWarning(warnings, goesOn ? lineBreak : missingQuote, line);
    if (goesOn) ++record;  // the second half is not a finding of its own
  }
}

}  // namespace

void warnOfText(const CsvRecords& input, const ImportKind& kind, std::vector<Warning>& warnings) {
  warnOfBytes(input.bytes(), warnings);
  if (input.count() == 0) addWarning(warnings, noRecords, wholeFile);
  if (input.count() > kind.largestRecordCount) addWarning(warnings, tooManyRecords, wholeFile);
  addWarning(warnings, checkSeparator(input.header()), headerLine);
  warnOfTitles(input.header(), warnings);
  warnOfRagged(input, warnings);
  warnOfQuotes(input, warnings);
}

}  // namespace velk
