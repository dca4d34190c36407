// Amounts as people write them, and what the leading-number rule makes of them.
#pragma once

#include <optional>
#include <string_view>

#include "apps/opnimp/warnings/warning_texts.h"

namespace velk {

/// What is doubtful about an amount; empty if it is read as it was meant. `cell` is the
/// unquoted value with the commas that stood inside its quotes, which the import drops.
std::optional<WarningId> checkAmount(std::string_view cell);

}  // namespace velk
