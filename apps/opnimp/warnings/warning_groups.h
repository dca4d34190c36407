// The groups of warnings that findWarnings puts together.
#pragma once

#include <vector>

#include "apps/opnimp/records/csv_records.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// About the text of a comma-separated file: its bytes, titles, separators and quotes, and the
/// number of fields of a line.
void warnOfText(const CsvRecords& input, const ImportKind& kind, std::vector<Warning>& warnings);
/// About amounts, dates and values that are missing.
void warnOfValues(const CsvRecords& input, const ImportKind& kind,
                  const std::vector<FieldMapping>& mapping, int currentYear,
                  std::vector<Warning>& warnings);

/// About the cells of a salesman workbook, and about its values.
void warnOfCells(const WorkbookRecords& input, std::vector<Warning>& warnings);
void warnOfSalesmen(const WorkbookRecords& input, const std::vector<FieldMapping>& mapping,
                    std::vector<Warning>& warnings);

}  // namespace velk
