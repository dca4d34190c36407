// Numbers of the main window's commands and controls.
#pragma once

#include <windows.h>

namespace velk {

inline constexpr WORD firstImportCommand = 100;  ///< one for each ImportScreenKind
inline constexpr WORD errorLogCommand = 110;
inline constexpr WORD refreshCommand = 111;
inline constexpr WORD exitCommand = 112;
inline constexpr WORD tableChoice = 120;
inline constexpr WORD tableList = 121;

}  // namespace velk
