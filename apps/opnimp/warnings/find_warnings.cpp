#include "apps/opnimp/warnings/find_warnings.h"

#include <optional>
#include <utility>

#include "apps/opnimp/records/later_records.h"
#include "apps/opnimp/warnings/lost_columns.h"
#include "apps/opnimp/warnings/master_check.h"
#include "apps/opnimp/warnings/opening_check.h"
#include "apps/opnimp/warnings/row_check.h"
#include "apps/opnimp/warnings/split_amounts.h"
#include "apps/opnimp/warnings/warnings_sheet.h"
#include "apps/opnimp/warnings/warnings_text.h"
#include "apps/opnimp/warnings/warnings_workbook.h"

namespace velk {

namespace {

/// One pass over the records for all that is checked of them.
void checkRecords(const CheckedFile& file, std::vector<Warning>& warnings) {
  RowCheck rows(file);
  OpeningCheck openings(file);
  SplitAmounts amounts(file);
  MasterCheck masters;
  // Without a mapping nobody knows which columns contain amounts, dates or names.
  std::optional<LostColumns> columns;
  if (!file.mapping.empty()) columns.emplace(file);
  for (std::size_t position = 0; position < file.input.count(); ++position) {
    const CheckedRecord record(file, position);
    // The values of a broken row are not where they belong.
    if (!rows.check(record, warnings) || !columns) continue;
    columns->check(record, warnings);
    amounts.check(record);
    if (file.kind.opening != nullptr) {
      openings.check(record, rows.wasRepeated(), warnings);
    } else {
      masters.check(record, rows.wasRepeated(), warnings);
    }
  }
  openings.finish(warnings);
  amounts.finish(warnings);
}

/// Of a run that leaves out the records before `first`: what was found in them is nothing to it,
/// and the others count from there.
std::vector<Warning> foundFrom(std::size_t first, bool isLong, std::vector<Warning> found) {
  std::vector<Warning> warnings;
  for (Warning& warning : found) {
    if (warning.id == WarningId::TooManyRecords && !isLong) continue;
    if (warning.readings.empty()) {
      warnings.push_back(std::move(warning));
      continue;
    }
    for (Misreading& reading : warning.readings) {
      if (reading.record < first) continue;
      reading.record -= first;
      addWarning(warnings, warning.id, std::move(reading));
    }
  }
  return warnings;
}

}  // namespace

std::vector<Warning> findWarnings(const InputRecords& input, const ImportKind& kind,
                                  const std::vector<FieldMapping>& mapping, int currentYear) {
  // The whole file first: a row can be equal to one that is left out.
  if (const LaterRecords* const later = asPart(input)) {
    return foundFrom(later->first(), later->count() > kind.largestRecordCount,
                     findWarnings(later->whole(), kind, mapping, currentYear));
  }
  std::vector<Warning> warnings;
  if (const auto* const workbook = dynamic_cast<const WorkbookRecords*>(&input)) {
    // Such a file is refused as a whole.
    if (!workbook->hasCaptions()) return {};
    warnOfCells(*workbook, warnings);
    if (!mapping.empty()) warnOfSalesmen(*workbook, mapping, warnings);
  } else if (const auto* const csv = dynamic_cast<const CsvRecords*>(&input)) {
    if (csv->isWorkbook()) return {};  // it is refused as a whole
    if (auto fault = faultOfFile(*csv, kind, mapping)) return {*std::move(fault)};
    warnOfText(*csv, kind, warnings);
    warnOfOddCells(*csv, mapping, warnings);
    // What was converted is in windows-1252, whatever it looks like.
    const bool looksUtf8 = !csv->isConverted() && isUtf8(csv->bytes());
    // Quotes count in the titles as in the records: both are separated by one rule.
    checkRecords({*csv, kind, mapping, currentYear, looksUtf8, countFields(csv->header())},
                 warnings);
  }
  return warnings;
}

}  // namespace velk
