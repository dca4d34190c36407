// Texts that are posted as they are: codes, references, names, addresses.
#pragma once

#include "apps/opnimp/warnings/checked_record.h"

namespace velk {

/// What is posted of a field's text.
std::string postedText(const CheckedRecord& record, std::size_t field);

/// Warns if a field's text is posted otherwise than it is written.
void checkText(const CheckedRecord& record, std::size_t field, std::vector<Warning>& warnings);

}  // namespace velk
