// Amounts as people write them, and what the leading-number rule makes of them.
#pragma once

#include <optional>
#include <string_view>

namespace velk {

struct AmountIssue {
  std::string_view code;
  std::string_view text;
};

/// What is doubtful about an amount; nothing when it is read as it was meant. `cell` is the
/// unquoted value with the commas that stood inside its quotes, which the import drops.
std::optional<AmountIssue> checkAmount(std::string_view cell);

}  // namespace velk
