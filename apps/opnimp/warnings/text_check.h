// Texts that are posted as they are: codes, references, names, addresses.
#pragma once

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

/// Warns if a field's text is posted otherwise than it is written.
void checkText(const CheckedRecord& record, std::size_t field, std::vector<Warning>& warnings);

}  // namespace velk
