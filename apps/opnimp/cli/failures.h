// How a command ends early. Each carries the line that the user reads.
#pragma once

#include <stdexcept>
#include <string_view>

namespace velk {

/// The command line makes no sense.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A file, folder or database could not be opened, made or written, before anything was posted.
struct CannotOpen : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The screen, or the runner on its behalf, refuses the file or the mapping.
struct Refused : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What is said where there is no memory for more: all that is known is in the journal.
inline constexpr std::string_view memoryRanOut =
    "the memory ran out; `opnimp runs` tells what imports have posted";

}  // namespace velk
