// Texts that are longer than what a procedure takes, which engines cut without a word.
#pragma once

#include <vector>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/report/preview_report.h"
#include "platform/database.h"

namespace velk {

/// Of all calls that the records make, by the database's catalogue; nothing where it tells no
/// lengths.
std::vector<LongValue> findLongValues(const Traces& traces, OwnConnection& database);

}  // namespace velk
