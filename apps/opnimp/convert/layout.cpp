#include "apps/opnimp/convert/layout.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

struct Delimiter {
  char sign;
  std::string_view name;
};
// In the order of preference where a text says nothing.
constexpr std::array<Delimiter, 4> delimiters{
    {{',', "comma"}, {';', "semicolon"}, {'\t', "tab"}, {'|', "bar"}}};

constexpr std::string_view separatorMark = "sep=";
/// No file has more lines above its titles.
constexpr std::size_t mostLinesAbove = 50;
/// Titles beyond are none: a hostile line may have millions.
constexpr std::size_t mostTitles = 500;

struct Ends {
  std::size_t pairs = 0;
  std::size_t feeds = 0;    // without a carriage return before them
  std::size_t doubled = 0;  // of the pairs, with one more carriage return before them
  std::size_t returns = 0;  // without a line feed behind them
};

Ends countEnds(std::string_view text) {
  Ends ends;
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string_view::npos; ++at) {
    const bool isPair = at > 0 && text[at - 1] == '\r';
    ++(isPair ? ends.pairs : ends.feeds);
    if (isPair && at > 1 && text[at - 2] == '\r') ++ends.doubled;
  }
  for (std::size_t at = 0; (at = text.find('\r', at)) != std::string_view::npos; ++at) {
    ++ends.returns;
  }
  ends.returns -= ends.pairs;
  return ends;
}

Assumption ofEnds(std::string value, const std::string& reason) {
  return {"line ends", std::move(value), reason, ""};
}

std::string linesEnd(std::size_t count) {
  return counted(count, "line ends in", "lines end in");
}

/// Line feeds may stand in quoted values of a file whose lines end in pairs.
void findEnds(std::string_view text, Layout& layout) {
  const Ends ends = countEnds(text);
  if (ends.feeds > 0) {
    layout.ends = LineEnds::LineFeeds;
    const std::string paired =
        ends.pairs == 0 ? "" : ", " + grouped(ends.pairs) + " in carriage return + line feed";
    layout.assumptions.push_back(
        ofEnds("line feeds", linesEnd(ends.feeds) + " a line feed" + paired));
  } else if (ends.doubled > 0 && ends.doubled == ends.pairs) {
    layout.ends = LineEnds::LineFeeds;
    layout.assumptions.push_back(
        ofEnds("two carriage returns + line feed", linesEnd(ends.doubled) + " them"));
  } else if (ends.pairs == 0 && ends.returns > 0) {
    layout.ends = LineEnds::CarriageReturns;
    layout.assumptions.push_back(
        ofEnds("carriage returns", linesEnd(ends.returns) + " a carriage return"));
  }
}

/// The first line, where it is one for spreadsheet programs: "sep=;".
void takeSeparatorLine(std::string_view text, Layout& layout, bool isGiven) {
  const std::string_view start = text.substr(0, separatorMark.size() + 1);
  if (start.size() <= separatorMark.size()) return;
  if (!equalsIgnoringCase(start.substr(0, separatorMark.size()), separatorMark)) return;
  RowReader rows(text, '\0', layout.ends);
  rows.next();
  if (rows.row().size() != start.size()) return;
  if (!isGiven) {
    layout.delimiter = start.back();
    layout.separatorLine = std::string("line 1 says ") + std::string(rows.row());
  }
  layout.offset = rows.row().size() + rows.lineEnd().size();
  layout.headerLine = 2;
}

const FieldTitle* fieldTitled(std::string_view title, const Arguments& arguments) {
  const std::span<const FieldTitle> titles = arguments.kind->titles;
  const auto found = std::ranges::find_if(titles, [&](const FieldTitle& field) {
    return equalsIgnoringCase(trim(field.title), trim(title));
  });
  return found == titles.end() ? nullptr : &*found;
}

/// One with a comma or a quote keeps its quotes, and loses commas.
std::string asScreensShow(std::string_view title) {
  if (title.find_first_of(",\"") == std::string_view::npos) return std::string(title);
  std::string shown = "\"";
  for (const char c : title) {
    if (c == '"') shown += c;
    if (c != ',') shown += c;
  }
  return shown += '"';
}

/// As the file has the title, or as the screens show it.
bool isNamedBy(std::string_view title, const MapOption& map) {
  const std::string_view column = trim(map.column);
  return equalsIgnoringCase(column, trim(title)) ||
         equalsIgnoringCase(column, trim(asScreensShow(title)));
}

bool isMappedBy(std::string_view title, std::size_t column, const MapOption& map) {
  const bool isNumbered = !map.isOfProfile && ordinalNumber(map.column) == column + 1;
  return isNumbered || isNamedBy(title, map);
}

/// The title is one of a field that another column is used for.
bool isMappedAnew(std::string_view title, const Arguments& arguments) {
  return std::ranges::any_of(arguments.maps, [&](const MapOption& map) {
    return equalsIgnoringCase(trim(map.field), trim(title));
  });
}

/// How many fields of the kind a row names: "Date" and "date" are one.
std::size_t countTitles(const RowReader& rows, const Arguments& arguments) {
  std::set<std::string> named;
  std::string room;
  for (std::size_t i = 0; i < std::min(rows.cells().size(), mostTitles); ++i) {
    const std::string_view title = trim(meantValue(rows.cells()[i].text, room));
    if (!title.empty() && namesField(title, arguments)) named.insert(lowerAscii(title));
  }
  return named.size();
}

struct Candidate {
  char delimiter;
  std::size_t titles = 0;
  std::size_t agreeing = 0;  // lines with as many values as the first one, if it has several
  std::size_t offset = 0;
  std::size_t line = 1;
};

/// What speaks for a delimiter in the first lines.
Candidate look(std::string_view text, const Layout& layout, char delimiter,
               const Arguments& arguments) {
  Candidate found{delimiter, 0, 0, layout.offset, layout.headerLine};
  RowReader rows(text, delimiter, layout.ends, layout.offset, layout.headerLine);
  std::size_t width = 0;
  std::size_t offset = layout.offset;
  for (std::size_t row = 0; row < mostLinesAbove && rows.next(); ++row) {
    if (row == 0) width = rows.cells().size();
    if (width > 1 && rows.cells().size() == width) ++found.agreeing;
    const std::size_t titles = countTitles(rows, arguments);
    if (titles > found.titles) {
      found = {delimiter, titles, found.agreeing, offset, rows.line()};
    }
    offset += rows.row().size() + rows.lineEnd().size();
    if (arguments.convert.headerLine != 0) break;
  }
  return found;
}

Candidate best(std::string_view text, const Layout& layout, const Arguments& arguments) {
  Candidate chosen = look(text, layout, layout.delimiter, arguments);
  if (arguments.convert.delimiter || !layout.separatorLine.empty()) return chosen;
  for (const Delimiter& delimiter : delimiters) {
    const Candidate other = look(text, layout, delimiter.sign, arguments);
    if (std::pair(other.titles, other.agreeing) > std::pair(chosen.titles, chosen.agreeing)) {
      chosen = other;
    }
  }
  return chosen;
}

bool allEndInPairs(std::string_view text, const Layout& layout) {
  if (layout.ends != LineEnds::LineFeeds) return false;
  RowReader rows = layout.rows(text);
  while (rows.next()) {
    const bool isPair = rows.lineEnd().empty() || rows.lineEnd() == "\r\n";
    if (!isPair || rows.isBroken()) return false;
  }
  return true;
}

/// As the user counts: by what ends lines, in quotes, too.
void goToHeader(std::string_view text, std::size_t line, Layout& layout) {
  const std::string_view end = layout.ends == LineEnds::CarriageReturns ? "\r" : "\n";
  std::size_t offset = 0;
  for (std::size_t at = 1; at < line && offset < text.size(); ++at) {
    offset = std::min(text.find(end, offset), text.size() - 1) + 1;
  }
  if (offset >= text.size()) {
    throw UsageError("the file has no line " + grouped(line) +
                     " that could hold the titles: check --header-line and --skip-lines");
  }
  layout.offset = offset;
  layout.headerLine = line;
}

/// The lines above are left out, unless they may be records: those have two values at least.
void takeTitlesBelow(std::string_view text, const Candidate& chosen, const Arguments& arguments,
                     Layout& layout) {
  RowReader above(text, chosen.delimiter, layout.ends, layout.offset, layout.headerLine);
  while (above.next() && above.line() < chosen.line && layout.refusal.empty()) {
    const auto values = std::ranges::count_if(
        above.cells(), [](const WrittenCell& cell) { return !trim(cell.text).empty(); });
    if (values < 2) continue;
    layout.refusal = "line " + grouped(chosen.line) + " has the titles, but line " +
                     grouped(above.line()) +
                     " above it may be a record: say which line has them with --header-line N";
    layout.choices = {"--header-line " + std::to_string(chosen.line),
                      "--header-line " + std::to_string(layout.headerLine)};
  }
  layout.assumptions.push_back({"titles", "line " + grouped(chosen.line),
                                "it holds " + counted(chosen.titles, "title", "titles") + " of " +
                                    std::string(arguments.kind->name) +
                                    "; what stands above it is left out",
                                "--header-line N"});
  layout.offset = chosen.offset;
  layout.headerLine = chosen.line;
}

void takeTitles(std::string_view text, const Candidate& chosen, const Arguments& arguments,
                Layout& layout) {
  const std::size_t given = arguments.convert.headerLine;
  if (given != 0) {
    layout.assumptions.push_back({"titles", "line " + grouped(given),
                                  arguments.convert.origin("--header-line", "--skip-lines"), ""});
  } else if (chosen.titles > 1 && chosen.line != layout.headerLine) {
    takeTitlesBelow(text, chosen, arguments, layout);
  }
}

/// From the first row on that is not blank.
Layout layoutOfSheet(std::string_view text) {
  Layout layout;
  layout.ends = LineEnds::CarriageReturns;
  layout.isCanonical = false;
  layout.offset = std::min(text.find_first_not_of('\r'), text.size());
  layout.headerLine = layout.offset + 1;
  return layout;
}

}  // namespace

std::string delimiterName(char delimiter) {
  const auto* const found = std::ranges::find(delimiters, delimiter, &Delimiter::sign);
  return found == delimiters.end() ? printable({&delimiter, 1}) : std::string(found->name);
}

bool isOwnTitle(std::string_view title, const Arguments& arguments) {
  return fieldTitled(title, arguments) != nullptr;
}

bool namesField(std::string_view title, const Arguments& arguments) {
  return isOwnTitle(title, arguments) ||
         std::ranges::any_of(arguments.maps,
                             [&](const MapOption& map) { return isNamedBy(title, map); });
}

std::string fieldTitleOf(const std::string& title, std::size_t column, const Arguments& arguments) {
  const auto map = std::ranges::find_if(arguments.maps, [&](const MapOption& option) {
    return isMappedBy(title, column, option) && fieldTitled(option.field, arguments) != nullptr;
  });
  if (map != arguments.maps.end()) return std::string(fieldTitled(map->field, arguments)->title);
  return isMappedAnew(title, arguments) ? title + " #" + std::to_string(column + 1) : "";
}

FieldNature natureOf(std::string_view title, std::size_t column, const Arguments& arguments) {
  // A column may be used for several fields.
  FieldNature nature = FieldNature::Text;
  const auto use = [&](std::string_view field) {
    const FieldTitle* const found = fieldTitled(field, arguments);
    if (found == nullptr || nature != FieldNature::Text) return;
    const bool counts = found->nature == FieldNature::Date || found->nature == FieldNature::Amount;
    if (counts) nature = found->nature;
  };
  if (!isMappedAnew(title, arguments)) use(title);
  for (const MapOption& map : arguments.maps) {
    if (isMappedBy(title, column, map)) use(map.field);
  }
  return nature;
}

Layout findLayout(std::string_view text, const Arguments& arguments) {
  const ConvertOptions& options = arguments.convert;
  Layout layout;
  findEnds(text, layout);
  layout.delimiter = options.delimiter.value_or(',');
  takeSeparatorLine(text, layout, options.delimiter.has_value());
  if (options.headerLine != 0) goToHeader(text, options.headerLine, layout);
  const Candidate chosen = best(text, layout, arguments);
  layout.delimiter = chosen.delimiter;
  takeTitles(text, chosen, arguments, layout);
  // Line feeds within quoted values end no line.
  if (layout.delimiter == ',' && layout.offset == 0 && allEndInPairs(text, layout)) {
    layout.ends = LineEnds::Pairs;
    layout.assumptions.clear();
  }
  layout.isCanonical =
      layout.ends == LineEnds::Pairs && layout.delimiter == ',' && layout.offset == 0;
  return layout;
}

Layout findSheetLayout(std::string_view text, const Arguments& arguments) {
  Layout layout = layoutOfSheet(text);
  if (arguments.convert.headerLine != 0) goToHeader(text, arguments.convert.headerLine, layout);
  takeTitles(text, look(text, layout, layout.delimiter, arguments), arguments, layout);
  return layout;
}

std::size_t countSheetTitles(std::string_view text, const Arguments& arguments) {
  return look(text, layoutOfSheet(text), ',', arguments).titles;
}

}  // namespace velk
