// Mouse and keyboard as the system sees them: what is sent goes where a user's would go.
#pragma once

#include <windows.h>

#include "base/errors.h"

namespace velk {

/// Error 57 when the system takes no input.
inline void sendInput(INPUT input) {
  if (SendInput(1, &input, sizeof input) == 1) return;
  throw RuntimeError(ErrorNumber::DeviceIo, "The system takes no input");
}

/// A button goes down or up at a place, which is part of the event because reports of earlier moves
/// may still be on their way.
inline void sendMouse(POINT at, DWORD button) {
  // In units of the display's 65536th parts, rounded up so that the pixel comes out.
  const auto part = [](LONG pixel, int metric) {
    constexpr LONG parts = 65536;
    const LONG pixels = GetSystemMetrics(metric);
    return (pixel * parts + pixels - 1) / pixels;
  };
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dx = part(at.x, SM_CXSCREEN);
  input.mi.dy = part(at.y, SM_CYSCREEN);
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button;
  sendInput(input);
}

inline void sendKey(WORD code, WORD character, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = character;
  input.ki.dwFlags = flags;
  sendInput(input);
}

/// A key by its virtual key code, with another held down if wanted (0: none).
inline void sendPress(WORD code, WORD held = 0) {
  if (held != 0) sendKey(held, 0, 0);
  sendKey(code, 0, 0);
  sendKey(code, 0, KEYEVENTF_KEYUP);
  if (held != 0) sendKey(held, 0, KEYEVENTF_KEYUP);
}

}  // namespace velk
