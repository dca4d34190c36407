// Mouse and keyboard, as the system's own input: it goes where a user's would go.
#pragma once

#include <windows.h>

#include <string_view>

namespace velk {

enum class Button { Left, Right };

/// At a point of the display.
void click(POINT at, Button button = Button::Left);
/// In the middle of a window.
void click(HWND window);

void type(std::wstring_view text);

}  // namespace velk
