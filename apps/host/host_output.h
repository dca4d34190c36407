// What the program says, beside its windows.
#pragma once

#include <windows.h>

#include <string_view>

namespace velk {

/// To the terminal or file that the program was started with; in a message box when there is none.
void say(std::string_view text);
/// In a message box; `owner` may be null.
void showError(HWND owner, std::string_view text);

}  // namespace velk
