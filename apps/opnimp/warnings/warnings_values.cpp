#include "apps/opnimp/warnings/warnings_values.h"

#include <algorithm>
#include <optional>

#include "apps/opnimp/warnings/amount_check.h"
#include "base/date_reader.h"
#include "base/text.h"
#include "shared/csv_text.h"

namespace velk {

namespace {

/// `endsRun`: a date that cannot be read stops the import; else the import itself reports it.
WarningText checkDate(const std::string& text, int currentYear, bool endsRun) {
  const std::optional<DateReading> reading = readDate(text, currentYear);
  if (!reading && endsRun && !text.empty())
    return {"date-unreadable",
            "A date cannot be read: the import stops there, unless the code is unknown. Correct it "
            "first."};
  if (reading && reading->order == DateOrder::MonthDayYear)
    return {"date-month-first",
            "A date makes sense only with the month first. Dates are read day first: if the file "
            "has the month first, those that read both ways are taken wrongly."};
  if (reading && reading->ambiguous)
    return {
        "date-reads-both-ways",
        "A date reads day first and month first; it is taken day first: 03/04/2008 is 3 April."};
  return {};
}

constexpr WarningText firstValueEmpty{
    "first-value-empty",
    "A column is not mapped by its name because the first record has no value in it: none of its "
    "values is imported. Give that record one, or use --map."};

void warnOfDocuments(const CsvRecords& input, const OpeningImportKind& kind,
                     const std::vector<FieldMapping>& mapping, int currentYear,
                     std::vector<Warning>& warnings) {
  const std::size_t width = mappedWidth(mapping);
  for (std::size_t record = 0; record < input.count(); ++record) {
    const std::size_t line = input.place(record).line;
    // Kept, because checkAmount judges the commas in a quoted amount.
    const auto fields = input.fields(record, QuotedComma::Keep, width);
    for (const std::size_t amount : {openingField::bill, openingField::balance}) {
      addWarning(warnings, checkAmount(mappedCell(fields, mapping, amount)), line);
    }
    // Without a text for invalid dates, the kind raises an error for them, which ends its run.
    const std::string date = mappedCell(fields, mapping, openingField::date);
    addWarning(warnings, checkDate(date, currentYear, kind.badDateEndsRun), line);
  }
}

/// On the master screen a title that is a field's name maps to it, unless the first record has no
/// value there.
void warnOfUnmapped(const CsvRecords& input, const std::vector<FieldMapping>& mapping,
                    std::vector<Warning>& warnings) {
  // Without records there is no first value that could be missing.
  if (input.count() == 0) return;
  const std::string header = CodePage::windows1252().decode(input.header());
  for (const std::string& title : splitLine(header, QuotedComma::Drop)) {
    const bool unmapped = std::ranges::any_of(mapping, [&](const FieldMapping& entry) {
      return !entry.column && equalsIgnoringCase(trim(entry.field), trim(title));
    });
    if (unmapped) addWarning(warnings, firstValueEmpty, wholeFile);
  }
}

}  // namespace

void warnOfValues(const CsvRecords& input, const ImportKind& kind,
                  const std::vector<FieldMapping>& mapping, int currentYear,
                  std::vector<Warning>& warnings) {
  if (kind.opening != nullptr) {
    warnOfDocuments(input, *kind.opening, mapping, currentYear, warnings);
  } else {
    warnOfUnmapped(input, mapping, warnings);
  }
}

}  // namespace velk
