// Handles that the main window owns.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

namespace velk {

struct FontOfWindow {
  using Handle = HFONT;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { DeleteObject(handle); }
};
using WindowFont = UniqueHandle<FontOfWindow>;

struct MenuOfWindow {
  using Handle = HMENU;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { DestroyMenu(handle); }
};
/// Released to the window or the menu that takes it.
using WindowMenu = UniqueHandle<MenuOfWindow>;

struct KeysOfWindow {
  using Handle = HACCEL;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { DestroyAcceleratorTable(handle); }
};
using WindowKeys = UniqueHandle<KeysOfWindow>;

}  // namespace velk
