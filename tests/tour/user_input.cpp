#include "tests/tour/user_input.h"

#include "base/errors.h"
#include "tests/tour/seen_windows.h"

namespace velk {

namespace {

void send(INPUT input) {
  if (SendInput(1, &input, sizeof input) == 1) return;
  throw RuntimeError(ErrorNumber::DeviceIo, "The system takes no input");
}

// In units of the display's 65536th parts, rounded up so that the pixel comes out.
LONG part(LONG pixel, int metric) {
  constexpr LONG parts = 65536;
  const LONG pixels = GetSystemMetrics(metric);
  return (pixel * parts + pixels - 1) / pixels;
}

// Place and button in one, because reports of earlier moves may still be on their way.
void mouse(POINT at, DWORD button) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dx = part(at.x, SM_CXSCREEN);
  input.mi.dy = part(at.y, SM_CYSCREEN);
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button;
  send(input);
}

void key(WORD code, WORD character, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = character;
  input.ki.dwFlags = flags;
  send(input);
}

}  // namespace

void click(POINT at, Button button) {
  waitFor("the pointer to move", [&] {
    POINT now{};
    SetCursorPos(at.x, at.y);
    return GetCursorPos(&now) != FALSE && now.x == at.x && now.y == at.y;
  });
  const bool left = button == Button::Left;
  mouse(at, left ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_RIGHTDOWN);
  mouse(at, left ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_RIGHTUP);
}

void click(HWND window) {
  RECT at{};
  GetWindowRect(window, &at);
  click({(at.left + at.right) / 2, (at.top + at.bottom) / 2});
}

void press(WORD code, WORD held) {
  if (held != 0) key(held, 0, 0);
  key(code, 0, 0);
  key(code, 0, KEYEVENTF_KEYUP);
  if (held != 0) key(held, 0, KEYEVENTF_KEYUP);
}

void type(std::wstring_view text) {
  for (const wchar_t character : text) {
    key(0, character, KEYEVENTF_UNICODE);
    key(0, character, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
  }
}

}  // namespace velk
