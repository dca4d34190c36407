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

template <class Type>
struct GdiObject : PointerHandle<Type> {
  static void close(Type object) { DeleteObject(object); }
};
using UniqueBitmap = UniqueHandle<GdiObject<HBITMAP>>;
using UniqueBrush = UniqueHandle<GdiObject<HBRUSH>>;
using UniqueFont = UniqueHandle<GdiObject<HFONT>>;

/// Made for memory, by CreateCompatibleDC.
struct MemoryDc : PointerHandle<HDC> {
  static void close(HDC dc) { DeleteDC(dc); }
};
using UniqueMemoryDc = UniqueHandle<MemoryDc>;

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
