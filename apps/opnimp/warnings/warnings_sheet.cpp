#include "apps/opnimp/warnings/warnings_sheet.h"

#include <string>
#include <utility>

namespace velk {

namespace {

struct Doubt {
  WarningId warning;
  std::string readAs;
};

Doubt doubtOf(const OddCell& cell) {
  const std::string quoted = "\"" + cell.text + "\"";
  if (cell.oddity == CellOddity::Error) return {WarningId::ErrorValues, "the text " + cell.text};
  if (cell.oddity == CellOddity::Hidden) {
    return {WarningId::HiddenRows, quoted + ", although it is hidden"};
  }
  return {WarningId::UncalculatedFormulas, quoted};
}

void warnOf(const OddCell& cell, std::size_t record, const std::vector<FieldMapping>& mapping,
            std::vector<Warning>& warnings) {
  for (const FieldMapping& entry : mapping) {
    if (entry.column != cell.column) continue;
    auto [id, readAs] = doubtOf(cell);
    addWarning(warnings, id,
               Misreading{record, cell.line, entry.field, cell.text, std::move(readAs)});
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
