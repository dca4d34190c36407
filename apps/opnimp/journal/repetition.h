// Whether a run would post again what an earlier run of the journal posted.
#pragma once

#include <string>

#include "apps/opnimp/journal/run_index.h"

namespace velk {

/// Why a run of opening balances that is about to begin is refused; empty if it is not. Runs that
/// it resumes do not count, and neither do those of other databases and kinds.
std::string repetitionRefusal(const RunIndex& index, const RunStart& run,
                              std::string_view placeWord);

}  // namespace velk
