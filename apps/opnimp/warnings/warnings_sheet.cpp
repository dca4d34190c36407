#include "apps/opnimp/warnings/warnings_sheet.h"

#include <string>

namespace velk {

namespace {

void warnOf(const OddCell& cell, std::size_t record, const std::vector<FieldMapping>& mapping,
            std::vector<Warning>& warnings) {
  for (const FieldMapping& entry : mapping) {
    if (entry.column != cell.column) continue;
    const WarningId id = cell.isError ? WarningId::ErrorValues : WarningId::UncalculatedFormulas;
    const std::string readAs = cell.isError ? "the text " + cell.text : "\"" + cell.text + "\"";
    addWarning(warnings, id, Misreading{record, cell.line, entry.field, cell.text, readAs});
  }
}

}  // namespace

void warnOfOddCells(const CsvRecords& input, const std::vector<FieldMapping>& mapping,
                    std::vector<Warning>& warnings) {
  // Both are in the order of their lines.
  std::size_t record = 0;
  for (const OddCell& cell : input.conversion().oddCells) {
    while (record < input.count() && input.place(record).line < cell.line) ++record;
    if (record == input.count()) return;
    if (input.place(record).line == cell.line) warnOf(cell, record, mapping, warnings);
  }
}

}  // namespace velk
