#include "apps/opnimp/warnings/warnings_workbook.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/text.h"
#include "masters/salesman_import.h"
#include "masters/salesman_workbook.h"

namespace velk {

namespace {

/// What is wrong with a text, and what is made of it.
struct CellDoubt {
  WarningId warning;
  std::string readAs;
};

std::optional<CellDoubt> checkCell(const std::string& text, CellNature nature) {
  if (nature == CellNature::Error) return CellDoubt{WarningId::ErrorValues, "the text " + text};
  if (nature == CellNature::NoResult) {
    return CellDoubt{WarningId::UncalculatedFormulas, "\"" + text + "\""};
  }
  // A text between two quotes loses only these, which its writer expects.
  if (!text.starts_with('"') || (text.size() > 1 && text.ends_with('"'))) return std::nullopt;
  return CellDoubt{WarningId::LeadingQuote, "\"" + withoutQuotes(text) + "\""};
}

// YES keeps its meaning in capital letters only, NO in any.
std::optional<CellDoubt> checkHandheld(std::string_view value) {
  const std::string saved(savedHandheld(value));
  if (value.empty() || equalsIgnoringCase(value, saved)) return std::nullopt;
  const bool yes = equalsIgnoringCase(value, "YES");
  return CellDoubt{yes ? WarningId::HandheldYesBecomesNo : WarningId::HandheldBecomesNo, saved};
}

/// A cell as the import reads names and handheld values.
std::string unquotedAndTrimmed(std::string_view cell) {
  return std::string(trim(withoutQuotes(std::string(cell))));
}

}  // namespace

void warnOfCells(const WorkbookRecords& input, std::vector<Warning>& warnings) {
  if (const std::string name = input.hiddenName(); !name.empty()) {
    addWarning(warnings, WarningId::HiddenSheet, wholeFile, name);
  }
  for (const std::size_t row : input.unreadRows()) {
    addWarning(warnings, WarningId::RowsNotRead, row);
  }
  // The pick lists come after these columns; the export itself has written those.
  if (!input.isBlank(1, WorkbookRecords::lastColumn + 1, dsTypeList.listColumn - 1)) {
    addWarning(warnings, WarningId::OtherColumns, 1);
  }
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t row = input.place(record).line;
    for (const int column : importedSalesmanColumns) {
      const std::string text = input.text(static_cast<int>(row), column);
      const auto doubt = checkCell(text, input.nature(static_cast<int>(row), column));
      if (!doubt) continue;
      const std::string caption(salesmanCaptions.at(static_cast<std::size_t>(column) - 1));
      addWarning(warnings, doubt->warning, Misreading{record, row, caption, text, doubt->readAs});
    }
  }
}

void warnOfSalesmen(const WorkbookRecords& input, const std::vector<FieldMapping>& mapping,
                    std::vector<Warning>& warnings) {
  // In lower case, so that names which differ only in case count as one.
  std::map<std::string, std::size_t, std::less<>> rows;
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t row = input.place(record).line;
    const auto fields = input.fields(record, mappedWidth(mapping));
    const auto cell = [&](std::size_t field) { return mappedCell(fields, mapping, field); };
    const auto warn = [&](WarningId id, std::size_t field, std::string text, std::string readAs) {
      addWarning(
          warnings, id,
          Misreading{record, row, mapping.at(field).field, std::move(text), std::move(readAs)});
    };
    const std::string name = unquotedAndTrimmed(cell(salesmanField::Name));
    const auto [earlier, isNew] = rows.emplace(lowerAscii(name), row);
    if (!name.empty() && !isNew) {
      warn(WarningId::DuplicateSalesmen, salesmanField::Name, name,
           "the salesman of row " + std::to_string(earlier->second));
    }
    if (cell(salesmanField::DSType).empty()) {
      addWarning(warnings, WarningId::NoDsType, row, mapping.at(salesmanField::DSType).field);
    }
    const std::string handheld = unquotedAndTrimmed(cell(salesmanField::HandHeldDS));
    if (const auto doubt = checkHandheld(handheld)) {
      warn(doubt->warning, salesmanField::HandHeldDS, handheld, doubt->readAs);
    }
  }
}

}  // namespace velk
