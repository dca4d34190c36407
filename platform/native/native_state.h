// Where the machine keeps what programs remember, and since when it runs.
#pragma once

#include <string>

namespace velk {

/// The user's folder for what programs remember between runs: $XDG_STATE_HOME, or ~/.local/state.
/// Empty when neither is known.
std::string stateFolder();

/// The user's folder for what programs are set to: $XDG_CONFIG_HOME, or ~/.config. Empty when
/// neither is known.
std::string settingsFolder();

/// Another text after each start of the machine; empty where it is not known.
std::string machineStart();

}  // namespace velk
