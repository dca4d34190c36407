// Warnings about titles, separators, quotes and the number of fields of a line.
#pragma once

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

void warnOfLines(const CsvRecords& input, const ImportKind& kind, Warnings& warnings);

}  // namespace velk
