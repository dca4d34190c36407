// The opposite of what a run posted of opening balances.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/records/field_mapping.h"

namespace velk {

struct Reversal {
  std::string text;          ///< a file of the run's own kind, as it is imported
  std::size_t count = 0;     ///< of its documents
  std::size_t doubtful = 0;  ///< records that may have been posted: they are not in it
};

/// From the calls of opening balances that took effect, not from their file; `mapping` gives the
/// titles. Error 5 for a text that no such file can hold.
Reversal reverse(const Traces& traces, const std::vector<FieldMapping>& mapping,
                 std::string_view debitNote);

}  // namespace velk
