// A screen under a real mouse and a real keyboard.
#pragma once

#include <windows.h>

#include <functional>

#include "tests/support/sent_input.h"
#include "tests/windows/open_screen.h"

namespace velk {

/// Runs messages until something is so, for two seconds at most.
inline bool pumpUntil(const std::function<bool()>& isSo, DWORD milliseconds = 2000) {
  for (const ULONGLONG end = GetTickCount64() + milliseconds; !isSo() && GetTickCount64() < end;) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    pump();
  }
  return isSo();
}

inline void pumpFor(DWORD milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  pumpUntil([&] { return GetTickCount64() >= end; });
}

inline void sendClick(HWND window, const RECT& inside) {
  POINT at{(inside.left + inside.right) / 2, (inside.top + inside.bottom) / 2};
  ClientToScreen(window, &at);
  SetCursorPos(at.x, at.y);
  sendMouse(at, MOUSEEVENTF_LEFTDOWN);
  sendMouse(at, MOUSEEVENTF_LEFTUP);
}

inline void sendClick(HWND window) {
  RECT all{};
  GetClientRect(window, &all);
  sendClick(window, all);
}

/// A screen in front of all others.
struct InputScreen : OpenScreen {
  explicit InputScreen(ScreenMaker make) {
    open(make);
    SetForegroundWindow(window.handle);
    pumpFor(50);
  }
};

}  // namespace velk
