// Warnings about titles, separators, quotes and the number of fields of a line.
#include <algorithm>
#include <set>
#include <string>

#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/warnings/warnings.h"
#include "base/text.h"
#include "mapping/csv_table.h"

namespace velk {

namespace {

constexpr std::size_t headerLine = 1;

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

void warnOfSeparator(std::string_view header, Warnings& warnings) {
  if (header.find(',') != std::string_view::npos) return;
  if (header.find(';') != std::string_view::npos) {
    warnings.add("semicolon-separated",
                 "The titles are separated by semicolons; only commas separate. Save the file with "
                 "commas.",
                 headerLine);
  } else if (header.find('\t') != std::string_view::npos) {
    warnings.add("tab-separated",
                 "The titles are separated by tabs; only commas separate. Save the file with "
                 "commas.",
                 headerLine);
  }
}

void warnOfTitles(std::string_view header, Warnings& warnings) {
  if (countFields(header) > maxColumns) return;  // such a file is not viewed anyway
  std::set<std::string, std::less<>> seen;
  for (const std::string& title : splitLine(header, QuotedComma::Drop)) {
    const std::string name = lowerAscii(trim(title));
    if (name.starts_with('"')) {
      warnings.add("quoted-titles",
                   "A title keeps its quotes and so matches no field by name. Remove them, or use "
                   "--map.",
                   headerLine);
    }
    if (name.empty()) {
      warnings.add("blank-titles", "A column without a title matches no field; use --map with #N.",
                   headerLine);
    } else if (!seen.insert(name).second) {
      warnings.add("duplicate-titles",
                   "A title stands twice: of two columns that match a field the later is used.",
                   headerLine);
    }
  }
}

void warnOfRagged(const CsvRecords& input, Warnings& warnings) {
  const std::size_t columns = countFields(input.header());
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t fields = countFields(input.bytesOf(record));
    const std::size_t line = input.place(record).line;
    if (fields < columns) {
      warnings.add("short-lines",
                   "A line has fewer fields than there are titles: the missing ones are empty.",
                   line);
    } else if (fields > columns) {
      warnings.add("long-lines",
                   "A line has more fields than there are titles: those behind are left out, and "
                   "values may stand in wrong columns. An amount such as 1,250.00 needs quotes, or "
                   "no comma.",
                   line);
    }
  }
}

void warnOfQuotes(const CsvRecords& input, Warnings& warnings) {
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t line = input.place(record).line;
    if (hasQuotedComma(input.bytesOf(record))) {
      warnings.add("quoted-commas",
                   "A comma inside quotes is dropped from the value: \"Smith, John\" becomes "
                   "Smith John.",
                   line);
    }
    if (!endsInsideQuotes(input.bytesOf(record))) continue;
    if (record + 1 < input.count() && endsInsideQuotes(input.bytesOf(record + 1))) {
      warnings.add("line-break-in-quotes",
                   "A quoted value seems to go on in the next line. A line break always ends a "
                   "record: the two halves are two records.",
                   line);
      ++record;
    } else {
      warnings.add("unbalanced-quotes",
                   "A quote is missing: the commas behind it do not separate, so that the rest of "
                   "the line is one value.",
                   line);
    }
  }
}

void warnOfCount(const CsvRecords& input, const ImportKind& kind, Warnings& warnings) {
  if (input.count() == 0) {
    warnings.add("no-records", "The file has no records behind its first line.", 0);
  } else if (input.count() > kind.largestRecordCount) {
    warnings.add("too-many-records", "More records than can be imported in one go. Split the file.",
                 0);
  }
}

}  // namespace

void warnOfLines(const CsvRecords& input, const ImportKind& kind, Warnings& warnings) {
  warnOfCount(input, kind, warnings);
  warnOfSeparator(input.header(), warnings);
  warnOfTitles(input.header(), warnings);
  warnOfRagged(input, warnings);
  warnOfQuotes(input, warnings);
}

}  // namespace velk
