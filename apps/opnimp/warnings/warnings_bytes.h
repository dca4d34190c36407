// Warnings about the bytes of a comma-separated file: what they are and how its lines end.
#pragma once

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

void warnOfBytes(const CsvRecords& input, Warnings& warnings);

}  // namespace velk
