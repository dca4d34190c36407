#include "apps/opnimp/run/screen_mapping.h"

#include <algorithm>
#include <functional>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

std::vector<std::size_t> titled(const ListView& list, std::string_view title, auto matches) {
  std::vector<std::size_t> found;
  for (std::size_t column = 0; column < list.columnCount(); ++column) {
    if (matches(trim(list.title(column)), trim(title))) found.push_back(column);
  }
  return found;
}

// The exact title comes first, so that columns which differ only in case can be told apart.
std::vector<std::size_t> titledAnyCase(const ListView& list, std::string_view title) {
  std::vector<std::size_t> found = titled(list, title, std::equal_to());
  return found.empty() ? titled(list, title, equalsIgnoringCase) : found;
}

std::string titles(const ListView& list) {
  std::vector<std::string> titles;
  for (std::size_t column = 0; column < list.columnCount(); ++column) {
    titles.emplace_back(list.title(column));
  }
  return listed(titles);
}

std::optional<std::size_t> columnByNumber(const ListView& list, std::string_view text) {
  const auto number = ordinalNumber(text);
  // A title may begin with "#", too: only digits up to the end make a number.
  if (!number) return std::nullopt;
  if (*number == 0 || *number > list.columnCount()) {
    throw Refused("--map: the file has no column " + std::string(text) + "; it has " +
                  std::to_string(list.columnCount()));
  }
  return *number - 1;
}

// A profile has titles only: its next file may have its columns elsewhere.
std::size_t fileColumn(const ListView& lv, const MapOption& option) {
  const std::string& name = option.column;
  const auto number = option.isOfProfile ? std::nullopt : columnByNumber(lv, name);
  if (number) return *number;
  const std::vector<std::size_t> found = titledAnyCase(lv, name);
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    throw Refused("--map: the file has no column \"" + name + "\"; it has: " + titles(lv));
  }
  throw Refused("--map: the file has " + std::to_string(found.size()) + " columns \"" + name +
                "\"; name one by its number, such as #" + std::to_string(found.front() + 1));
}

std::size_t fieldNamed(const ListView& mappingList, const std::string& name) {
  const std::vector<std::size_t> found = titledAnyCase(mappingList, name);
  if (!found.empty()) return found.front();
  throw Refused("--map: there is no field \"" + name + "\"; there is: " + titles(mappingList));
}

// The screen keeps no other note of its mapping: a mapped field shares its file column's cells.
std::optional<std::size_t> sharedColumn(const ImportScreen& screen, std::size_t field) {
  const auto cells = screen.mappingList.columnCells(field);
  if (cells == nullptr) return std::nullopt;
  for (std::size_t column = 0; column < screen.lv.columnCount(); ++column) {
    if (screen.lv.columnCells(column) == cells) return column;
  }
  return std::nullopt;
}

}  // namespace

std::vector<FieldMapping> readMapping(const ImportScreen& screen) {
  std::vector<FieldMapping> mapping;
  for (std::size_t field = 0; field < screen.mappingList.columnCount(); ++field) {
    const std::string title = screen.mappingList.title(field);
    FieldMapping entry{std::string(trim(title)), sharedColumn(screen, field), {}};
    if (entry.column) entry.title = screen.lv.title(*entry.column);
    mapping.push_back(std::move(entry));
  }
  return mapping;
}

void requireReadAsMapped(const ImportScreen& screen, const Arguments& arguments,
                         const Conversion& conversion) {
  if (conversion.natures.empty()) return;
  for (const FieldMapping& entry : readMapping(screen)) {
    const auto field = std::ranges::find_if(arguments.kind->titles, [&](const FieldTitle& title) {
      return equalsIgnoringCase(trim(title.title), entry.field);
    });
    if (!entry.column || field == arguments.kind->titles.end()) continue;
    const bool counts = field->nature == FieldNature::Date || field->nature == FieldNature::Amount;
    if (!counts || conversion.natures.at(*entry.column) == field->nature) continue;
    const std::string number = "#" + std::to_string(*entry.column + 1);
    throw Refused("the column " + entry.title + " is mapped to " + entry.field +
                  ", and was not read as one: name it by its number, --map \"" + entry.field + "=" +
                  number + "\"");
  }
}

void requireTitles(const ImportScreen& screen, const Arguments& arguments) {
  std::vector<std::string> missing;
  for (const MapOption& map : arguments.maps) {
    if (map.isOfProfile && titledAnyCase(screen.lv, map.column).empty()) {
      missing.push_back('"' + map.column + '"');
    }
  }
  if (missing.empty()) return;
  throw Refused("the profile " + *arguments.profile +
                " does not fit the file, which has no column " + listed(missing) +
                "; it has: " + titles(screen.lv));
}

MapOption mapAsShown(MapOption option, const Conversion& conversion) {
  const auto isNamed = [&](const std::string& title) {
    return equalsIgnoringCase(title, trim(option.column));
  };
  const auto& titles = conversion.titles;
  const auto found = std::ranges::find_if(titles, isNamed);
  if (std::ranges::count_if(titles, isNamed) == 1) {
    option.column = "#" + std::to_string(found - titles.begin() + 1);
    option.isOfProfile = false;
  }
  return option;
}

void mapByHand(ImportScreen& screen, ImportReport& report, const MapOption& option) {
  const std::size_t column = fileColumn(screen.lv, option);
  const std::size_t field = fieldNamed(screen.mappingList, option.field);
  // What maps by its title needs no hand, which is stricter on empty values.
  if (option.isOfProfile && sharedColumn(screen, field) == column) return;
  report.beginStep();
  screen.lv.userColumnClick(column);
  screen.mappingList.userColumnClick(field);
  const auto cells = screen.mappingList.columnCells(field);
  const auto& refusal = report.refusal();
  const std::string& said = refusal ? refusal->text : report.lastError();
  // A click has no result: that both lists share the cells is the proof that the field is mapped.
  if (said.empty() && cells != nullptr && cells == screen.lv.columnCells(column)) return;
  throw Refused("--map \"" + option.field + "=" + option.column + "\" was refused" +
                (said.empty() ? "" : ": " + said));
}

}  // namespace velk
