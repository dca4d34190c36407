// Warnings about the cells and values of a salesman workbook.
#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/warnings/warnings.h"
#include "base/text.h"
#include "masters/salesman_import.h"

namespace velk {

namespace {

/// A cell as the import reads names and handheld values.
std::string unquotedAndTrimmed(const std::string& cell) {
  return std::string(trim(withoutQuotes(cell)));
}

bool isErrorValue(std::string_view text) {
  constexpr std::array<std::string_view, 7> errors{"#NULL!", "#DIV/0!", "#VALUE!", "#REF!",
                                                   "#NAME?", "#NUM!",   "#N/A"};
  return std::ranges::find(errors, text) != errors.end();
}

void warnOfText(const std::string& text, std::size_t row, Warnings& warnings) {
  if (isErrorValue(text)) {
    warnings.add("error-values",
                 "The formula of a cell has no result; what is read is its error, such as #N/A.",
                 row);
  } else if (text.starts_with('"') && (text.size() < 2 || !text.ends_with('"'))) {
    warnings.add("leading-quote",
                 "A text that begins with a double quote loses it, and its last character, too.",
                 row);
  }
}

void warnOfRowsNotRead(const WorkbookRecords& input, Warnings& warnings) {
  for (const std::size_t row : input.unreadRows()) {
    warnings.add("rows-not-read",
                 "Reading ends at the first row that is blank in columns A to E: a row with data "
                 "from there on is not read. Remove the blank row.",
                 row);
  }
}

void warnOfOtherColumns(const WorkbookRecords& input, Warnings& warnings) {
  if (input.isBlank(1, WorkbookRecords::lastColumn + 1, dsTypeList.listColumn - 1)) return;
  warnings.add("other-columns", "Columns behind the seventh (G) are not read.", 1);
}

void warnOfHandheld(const std::string& value, std::size_t row, Warnings& warnings) {
  const std::string_view saved = savedHandheld(value);
  if (equalsIgnoringCase(value, saved) || value.empty()) return;
  if (equalsIgnoringCase(value, "Yes")) {
    warnings.add("handheld-yes-becomes-no",
                 "Only YES in capital letters is saved as yes: Yes and yes are saved as No. Write "
                 "YES.",
                 row);
  } else {
    warnings.add("handheld-becomes-no",
                 "A HandHeld DS value that is neither YES nor NO is saved as No.", row);
  }
}

}  // namespace

void warnOfCells(const WorkbookRecords& input, Warnings& warnings) {
  warnOfRowsNotRead(input, warnings);
  warnOfOtherColumns(input, warnings);
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t row = input.place(record).line;
    for (const int column : importedSalesmanColumns) {
      warnOfText(input.text(static_cast<int>(row), column), row, warnings);
    }
  }
}

void warnOfSalesmen(const WorkbookRecords& input, const std::vector<FieldMapping>& mapping,
                    Warnings& warnings) {
  std::set<std::string, std::less<>> names;
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t row = input.place(record).line;
    const auto fields = input.fields(record, mappedWidth(mapping));
    const auto cell = [&](std::size_t field) { return mappedCell(fields, mapping, field); };
    const std::string name = unquotedAndTrimmed(cell(salesmanField::Name));
    if (!name.empty() && !names.insert(lowerAscii(name)).second) {
      warnings.add("duplicate-salesmen",
                   "A salesman stands in a row above already: both rows are posted, and the later "
                   "one usually replaces the earlier.",
                   row);
    }
    if (cell(salesmanField::DSType).empty()) {
      warnings.add("no-ds-type", "A salesman without a DSType is refused.", row);
    }
    warnOfHandheld(unquotedAndTrimmed(cell(salesmanField::HandHeldDS)), row, warnings);
  }
}

}  // namespace velk
