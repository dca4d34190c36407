#include "apps/opnimp/warnings/find_warnings.h"

#include "apps/opnimp/warnings/warnings_text.h"
#include "apps/opnimp/warnings/warnings_values.h"
#include "apps/opnimp/warnings/warnings_workbook.h"

namespace velk {

std::vector<Warning> findWarnings(const InputRecords& input, const ImportKind& kind,
                                  const std::vector<FieldMapping>& mapping, int currentYear) {
  std::vector<Warning> warnings;
  // Without a mapping nobody knows which columns contain amounts, dates or names.
  const bool mapped = !mapping.empty();
  if (const auto* const workbook = dynamic_cast<const WorkbookRecords*>(&input)) {
    // Such a file is refused as a whole.
    if (!workbook->hasCaptions()) return {};
    warnOfCells(*workbook, warnings);
    if (mapped) warnOfSalesmen(*workbook, mapping, warnings);
  } else if (const auto* const csv = dynamic_cast<const CsvRecords*>(&input)) {
    if (csv->isWorkbook()) return {};  // it is refused as a whole
    warnOfText(*csv, kind, warnings);
    if (mapped) warnOfValues(*csv, kind, mapping, currentYear, warnings);
  }
  return warnings;
}

}  // namespace velk
