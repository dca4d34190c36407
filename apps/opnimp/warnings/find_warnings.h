// All warnings of a file, whatever its format.
#pragma once

#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// Without a mapping (View failed) the warnings about values are left out.
std::vector<Warning> findWarnings(const InputRecords& input, const ImportKind& kind,
                                  const std::vector<FieldMapping>& mapping, int currentYear);

}  // namespace velk
