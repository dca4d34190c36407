// Warnings about the cells and values of a salesman workbook.
#pragma once

#include <vector>

#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/workbook_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

void warnOfCells(const WorkbookRecords& input, std::vector<Warning>& warnings);
void warnOfSalesmen(const WorkbookRecords& input, const std::vector<FieldMapping>& mapping,
                    std::vector<Warning>& warnings);

}  // namespace velk
