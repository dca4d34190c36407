// What the machine tells of its user and itself: variables of the environment, folders, its start.
#pragma once

#include <string>
#include <string_view>

namespace velk {

/// As UTF-8; empty where it is not set.
std::string environmentVariable(const std::string& name);

/// The user's folder for what programs remember between runs: $XDG_STATE_HOME, or ~/.local/state;
/// on Windows %LOCALAPPDATA%. Empty when none is known.
std::string stateFolder();

/// The user's folder for what programs are set to: $XDG_CONFIG_HOME, or ~/.config; on Windows
/// %APPDATA%. Empty when none is known.
std::string settingsFolder();

/// Why they are not known.
#ifdef _WIN32
inline constexpr std::string_view noStateFolder = "LOCALAPPDATA is not set";
inline constexpr std::string_view noSettingsFolder = "APPDATA is not set";
#else
inline constexpr std::string_view noStateFolder = "neither XDG_STATE_HOME nor HOME is set";
inline constexpr std::string_view noSettingsFolder = "neither XDG_CONFIG_HOME nor HOME is set";
#endif

/// Another text after each start of the machine; empty where it is not known.
std::string machineStart();

}  // namespace velk
