// What the program says, beside its windows.
#pragma once

#include <windows.h>

#include <string_view>

namespace velk {

/// Of its main window and its message boxes.
inline constexpr wchar_t hostTitle[] = L"Sample accounts";

/// To the terminal or file that the program was started with; in a message box when there is none.
void say(std::string_view text);
/// In a message box; `owner` may be null.
void showError(HWND owner, std::string_view text);

}  // namespace velk
