// Where the machine keeps what programs remember, and since when it runs.
#pragma once

#include <string>

namespace velk {

/// The user's folder for what programs remember between runs: $XDG_STATE_HOME, or ~/.local/state.
/// Empty when neither is known.
std::string stateFolder();

/// Another text after each start of the machine; empty where it is not known.
std::string machineStart();

}  // namespace velk
