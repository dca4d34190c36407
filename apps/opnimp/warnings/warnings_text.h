// Warnings about the text of a comma-separated file: its bytes, titles, separators and quotes, and
// the number of fields of a line.
#pragma once

#include <vector>

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

void warnOfText(const CsvRecords& input, const ImportKind& kind, std::vector<Warning>& warnings);

}  // namespace velk
