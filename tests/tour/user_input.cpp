#include "tests/tour/user_input.h"

#include "tests/support/sent_input.h"
#include "tests/tour/seen_windows.h"

namespace velk {

void click(POINT at, Button button) {
  waitFor("the pointer to move", [&] {
    POINT now{};
    SetCursorPos(at.x, at.y);
    return GetCursorPos(&now) != FALSE && now.x == at.x && now.y == at.y;
  });
  const bool left = button == Button::Left;
  sendMouse(at, left ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_RIGHTDOWN);
  sendMouse(at, left ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_RIGHTUP);
}

void click(HWND window) {
  RECT at{};
  GetWindowRect(window, &at);
  click({(at.left + at.right) / 2, (at.top + at.bottom) / 2});
}

void type(std::wstring_view text) {
  for (const wchar_t character : text) {
    sendKey(0, character, KEYEVENTF_UNICODE);
    sendKey(0, character, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
  }
}

}  // namespace velk
