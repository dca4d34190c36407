// Screens as windows, found, read and driven by messages as a user drives them.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows/wide_text.h"
#include "tests/support/checks.h"
#include "ui/form.h"

namespace velk {

/// Runs all messages there are, as the host's loop would.
inline void pump() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    // As every inner loop has to: the end is meant for the outermost.
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

inline std::string textOf(HWND window) {
  wchar_t text[1024];
  return fromWide({text, static_cast<std::size_t>(GetWindowTextW(window, text, 1024))});
}

inline bool isOfClass(HWND window, std::wstring_view wanted) {
  wchar_t name[64];
  GetClassNameW(window, name, 64);
  return wanted == name;
}

/// The first window inside another that the test accepts.
inline HWND inside(HWND window, const std::function<bool(HWND)>& accepts) {
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (accepts(child)) return child;
    if (const HWND found = inside(child, accepts)) return found;
  }
  return nullptr;
}

struct Window {
  explicit Window(HWND window) : handle(window) {}
  explicit Window(const Form& form)
      : Window(reinterpret_cast<HWND>(static_cast<INT_PTR>(form.number(Property::hWnd)))) {}

  HWND button(const char* caption) const {
    return inside(handle, [&](HWND window) { return textOf(window) == caption; });
  }
  void click(const char* caption) const {
    const HWND target = button(caption);
    REQUIRE(target != nullptr);
    PostMessageW(target, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    PostMessageW(target, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    pump();
  }
  /// The preview (0) or the mapping list (1).
  HWND list(int which) const {
    return inside(handle,
                  [&](HWND window) { return isOfClass(window, WC_LISTVIEWW) && which-- == 0; });
  }
  std::string cell(int which, int row, int column) const {
    wchar_t text[256] = L"";
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 256;
    SendMessageW(list(which), LVM_GETITEMTEXTW, static_cast<WPARAM>(row - 1),
                 reinterpret_cast<LPARAM>(&item));
    return fromWide(text);
  }
  int rows(int which) const {
    return static_cast<int>(SendMessageW(list(which), LVM_GETITEMCOUNT, 0, 0));
  }
  void clickHeader(int which, int column) const {
    const auto header = reinterpret_cast<HWND>(SendMessageW(list(which), LVM_GETHEADER, 0, 0));
    RECT at{};
    SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column),
                 reinterpret_cast<LPARAM>(&at));
    const LPARAM where = MAKELPARAM((at.left + at.right) / 2, (at.top + at.bottom) / 2);
    PostMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, where);
    PostMessageW(header, WM_LBUTTONUP, 0, where);
    pump();
  }
  RECT outer() const {
    RECT rectangle{};
    GetWindowRect(handle, &rectangle);
    return rectangle;
  }

  HWND handle;
};

inline void press(WPARAM key, bool control = false) {
  BYTE keys[256] = {};
  keys[VK_CONTROL] = control ? 0x80 : 0;
  SetKeyboardState(keys);
  PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
  pump();
  keys[VK_CONTROL] = 0;
  SetKeyboardState(keys);
}

/// Chooses salesmen on the master screen, by the keyboard.
inline void chooseSalesmen(const Window& screen) {
  SetFocus(inside(screen.handle,
                  [](HWND control) { return SendMessageW(control, CB_GETCOUNT, 0, 0) == 3; }));
  press(VK_DOWN);
  press(VK_DOWN);
}

inline BOOL CALLBACK collectScreen(HWND window, LPARAM to) {
  if (isOfClass(window, L"Velk_OpnImp.Form")) {
    reinterpret_cast<std::vector<HWND>*>(to)->push_back(window);
  }
  return TRUE;
}

/// The screens that a thread shows.
inline std::vector<HWND> openScreens(DWORD thread = GetCurrentThreadId()) {
  std::vector<HWND> screens;
  EnumThreadWindows(thread, collectScreen, reinterpret_cast<LPARAM>(&screens));
  return screens;
}

/// Closes them as their user does, and answers their captions.
inline Texts closeScreens() {
  Texts captions;
  for (const HWND screen : openScreens()) {
    captions.push_back(textOf(screen));
    SendMessageW(screen, WM_CLOSE, 0, 0);
  }
  return captions;
}

}  // namespace velk
