#include "apps/opnimp/warnings/warnings_lines.h"

#include <set>
#include <string>

#include "base/text.h"
#include "mapping/csv_table.h"

namespace velk {

namespace {

constexpr std::size_t headerLine = 1;

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
    "A line has more fields than there are titles: those behind are left out, and values may "
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

constexpr WarningCheck<std::string_view> separators[] = {
    {{}, [](const std::string_view& header) { return std::ranges::count(header, ',') > 0; }},
    {{"semicolon-separated",
      "The titles are separated by semicolons; only commas separate. Save the file with commas."},
     [](const std::string_view& header) { return std::ranges::count(header, ';') > 0; }},
    {{"tab-separated",
      "The titles are separated by tabs; only commas separate. Save the file with commas."},
     [](const std::string_view& header) { return std::ranges::count(header, '\t') > 0; }},
};

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

void warnOfTitles(std::string_view header, Warnings& warnings) {
  if (countFields(header) > maxColumns) return;  // such a file is not viewed anyway
  std::set<std::string, std::less<>> seen;
  for (const std::string& title : splitLine(header, QuotedComma::Drop)) {
    const std::string name = lowerAscii(trim(title));
    if (name.starts_with('"')) warnings.add(quotedTitle, headerLine);
    if (name.empty()) {
      warnings.add(blankTitle, headerLine);
    } else if (!seen.insert(name).second) {
      warnings.add(duplicateTitle, headerLine);
    }
  }
}

void warnOfRagged(const CsvRecords& input, Warnings& warnings) {
  const std::size_t columns = countFields(input.header());
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t fields = countFields(input.bytesOf(record));
    if (fields == columns) continue;
    warnings.add(fields < columns ? shortLine : longLine, input.place(record).line);
  }
}

void warnOfQuotes(const CsvRecords& input, Warnings& warnings) {
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t line = input.place(record).line;
    if (hasQuotedComma(input.bytesOf(record))) warnings.add(quotedComma, line);
    if (!endsInsideQuotes(input.bytesOf(record))) continue;
    const bool goesOn = record + 1 < input.count() && endsInsideQuotes(input.bytesOf(record + 1));
    warnings.add(goesOn ? lineBreak : missingQuote, line);
    if (goesOn) ++record;  // the second half is not a finding of its own
  }
}

}  // namespace

void warnOfLines(const CsvRecords& input, const ImportKind& kind, Warnings& warnings) {
  if (input.count() == 0) warnings.add(noRecords, Warnings::wholeFile);
  if (input.count() > kind.largestRecordCount) warnings.add(tooManyRecords, Warnings::wholeFile);
  warnings.add(firstWarning(separators, input.header()), headerLine);
  warnOfTitles(input.header(), warnings);
  warnOfRagged(input, warnings);
  warnOfQuotes(input, warnings);
}

}  // namespace velk
