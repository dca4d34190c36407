// Warnings about amounts, dates and values that are missing.
#pragma once

#include <vector>

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

void warnOfValues(const CsvRecords& input, const ImportKind& kind,
                  const std::vector<FieldMapping>& mapping, int currentYear,
                  std::vector<Warning>& warnings);

}  // namespace velk
