#include "apps/opnimp/sheets/sheet_set.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "base/numbers.h"
#include "base/text.h"

namespace velk {

const SheetCell* Sheet::find(std::size_t row, std::size_t column) const {
  const auto place = [](const SheetCell& cell) {
    return std::pair<std::size_t, std::size_t>(cell.row, cell.column);
  };
  const auto found = std::ranges::lower_bound(cells, std::pair(row, column), {}, place);
  return found != cells.end() && place(*found) == std::pair(row, column) ? &*found : nullptr;
}

// The exact name comes first, so that sheets which differ only in case can be told apart.
const Sheet* findSheet(const SheetSet& set, std::string_view name) {
  const auto named = [&](auto matches) {
    const auto found = std::ranges::find_if(
        set.sheets, [&](const Sheet& sheet) { return matches(sheet.name, name); });
    return found == set.sheets.end() ? nullptr : &*found;
  };
  if (const Sheet* const exact = named(std::equal_to())) return exact;
  if (const Sheet* const similar = named(equalsIgnoringCase)) return similar;
  const std::optional<std::size_t> number = ordinalNumber(name);
  return number && *number - 1 < set.sheets.size() ? &set.sheets[*number - 1] : nullptr;
}

std::string noSuchSheet(const SheetSet& set, std::string_view name) {
  std::vector<const Sheet*> all;
  for (const Sheet& sheet : set.sheets) all.push_back(&sheet);
  return "The workbook has no sheet \"" + std::string(name) + "\"; it has " + namesOf(all);
}

std::string namesOf(const std::vector<const Sheet*>& sheets) {
  constexpr std::size_t most = 20;
  std::string names;
  for (std::size_t i = 0; i < std::min(sheets.size(), most); ++i) {
    names.append(i == 0 ? "\"" : ", \"").append(sheets[i]->name).append("\"");
    if (sheets[i]->isHidden) names += " (hidden)";
  }
  return sheets.size() > most ? names + ", ..." : names;
}

}  // namespace velk
