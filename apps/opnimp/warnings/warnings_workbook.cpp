#include "apps/opnimp/warnings/warnings_workbook.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "base/text.h"

namespace velk {

namespace {

constexpr std::array<std::string_view, 7> errorValues{"#NULL!", "#DIV/0!", "#VALUE!", "#REF!",
                                                      "#NAME?", "#NUM!",   "#N/A"};

constexpr WarningText rowNotRead{
    "rows-not-read",
    "Reading ends at the first row that is blank in columns A to E: a row with data from there on "
    "is not read. Remove the blank row."};
constexpr WarningText otherColumns{"other-columns", "Columns after the seventh (G) are not read."};
constexpr WarningText duplicateSalesman{
    "duplicate-salesmen",
    "A row above has this salesman already: both rows are posted, and the later one usually "
    "replaces the earlier."};
constexpr WarningText noDsType{"no-ds-type", "A salesman without a DSType is refused."};

WarningText checkCell(std::string_view text) {
  if (std::ranges::count(errorValues, text) > 0)
    return {"error-values",
            "The formula of a cell has no result; what is read is its error, such as #N/A."};
  // A text between two quotes loses only these, which its writer expects.
  if (text.starts_with('"') && (text.size() < 2 || !text.ends_with('"')))
    return {"leading-quote",
            "A text that begins with a double quote loses it, and its last character, too."};
  return {};
}

// YES keeps its meaning in capital letters only, NO in any.
WarningText checkHandheld(std::string_view value) {
  if (value.empty() || value == "YES" || equalsIgnoringCase(value, "NO")) return {};
  if (equalsIgnoringCase(value, "YES"))
    return {"handheld-yes-becomes-no",
            "Only YES in capital letters is saved as yes: Yes and yes are saved as No. Write YES."};
  return {"handheld-becomes-no", "A HandHeld DS value that is neither YES nor NO is saved as No."};
}

/// A cell as the import reads names and handheld values.
std::string unquotedAndTrimmed(const std::string& cell) {
  return std::string(trim(withoutQuotes(cell)));
}

}  // namespace

void warnOfCells(const WorkbookRecords& input, std::vector<Warning>& warnings) {
  for (const std::size_t row : input.unreadRows()) addWarning(warnings, rowNotRead, row);
  // The pick lists come after these columns; the export itself has written those.
  if (!input.isBlank(1, WorkbookRecords::lastColumn + 1, dsTypeList.listColumn - 1)) {
    addWarning(warnings, otherColumns, 1);
  }
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t row = input.place(record).line;
    for (const int column : importedSalesmanColumns) {
      addWarning(warnings, checkCell(input.text(static_cast<int>(row), column)), row);
    }
  }
}

void warnOfSalesmen(const WorkbookRecords& input, const std::vector<FieldMapping>& mapping,
                    std::vector<Warning>& warnings) {
  // In lower case, so that names which differ only in case count as one.
  std::set<std::string, std::less<>> names;
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t row = input.place(record).line;
    const auto fields = input.fields(record, mappedWidth(mapping));
    const auto cell = [&](std::size_t field) { return mappedCell(fields, mapping, field); };
    const std::string name = unquotedAndTrimmed(cell(salesmanField::Name));
    const bool repeated = !name.empty() && !names.insert(lowerAscii(name)).second;
    if (repeated) addWarning(warnings, duplicateSalesman, row);
    if (cell(salesmanField::DSType).empty()) addWarning(warnings, noDsType, row);
    const std::string handheld = unquotedAndTrimmed(cell(salesmanField::HandHeldDS));
    addWarning(warnings, checkHandheld(handheld), row);
  }
}

}  // namespace velk
