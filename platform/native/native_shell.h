// How the machine's command line takes a word.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velk {

/// The word as a user types it, so that it stays one and nothing in it is replaced or run; empty
/// where that cannot be promised, as of a quote on Windows, whose two shells differ.
std::optional<std::string> shellWord(std::string_view word);

}  // namespace velk
