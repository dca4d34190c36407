// Banks, branches and vendors, record by record.
#pragma once

#include <vector>

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

void checkMaster(const CheckedRecord& record, std::vector<Warning>& warnings);

}  // namespace velk
