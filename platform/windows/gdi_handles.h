// Handles of the window system that have to be given back.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

namespace velk {

template <class Type>
struct PointerHandle {
  using Handle = Type;
  static Handle none() { return nullptr; }
};

struct FontObject : PointerHandle<HFONT> {
  static void close(HFONT font) { DeleteObject(font); }
};
using UniqueFont = UniqueHandle<FontObject>;

/// That of the whole display, by GetDC(nullptr).
struct DisplayDc : PointerHandle<HDC> {
  static void close(HDC dc) { ReleaseDC(nullptr, dc); }
};
using UniqueDisplayDc = UniqueHandle<DisplayDc>;

/// A menu that no window owns.
struct LooseMenu : PointerHandle<HMENU> {
  static void close(HMENU menu) { DestroyMenu(menu); }
};
using UniqueMenu = UniqueHandle<LooseMenu>;

struct WindowsHook : PointerHandle<HHOOK> {
  static void close(HHOOK hook) { UnhookWindowsHookEx(hook); }
};
using UniqueHook = UniqueHandle<WindowsHook>;

}  // namespace velk
