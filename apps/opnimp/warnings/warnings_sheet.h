// Warnings about the cells of a worksheet that was converted.
#pragma once

#include <vector>

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// Formulas without a value, and cells that are hidden, in columns that are used.
void warnOfOddCells(const CsvRecords& input, const std::vector<FieldMapping>& mapping,
                    std::vector<Warning>& warnings);

}  // namespace velk
