// Handles of Windows that are given back at their owner's end.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

namespace velk {

/// Of the types that are null when there is none.
template <class Type>
struct SystemHandle {
  using Handle = Type;
  static Handle none() { return nullptr; }
  static void close(HFONT font) { DeleteObject(font); }
  static void close(HDC display) { ReleaseDC(nullptr, display); }
  static void close(HMENU menu) { DestroyMenu(menu); }
  static void close(HHOOK hook) { UnhookWindowsHookEx(hook); }
  static void close(HKEY key) { RegCloseKey(key); }
};
using UniqueFont = UniqueHandle<SystemHandle<HFONT>>;
/// That of the whole display, by GetDC(nullptr).
using UniqueDisplayDc = UniqueHandle<SystemHandle<HDC>>;
/// A menu that no window owns.
using UniqueMenu = UniqueHandle<SystemHandle<HMENU>>;
using UniqueHook = UniqueHandle<SystemHandle<HHOOK>>;
using RegistryKey = UniqueHandle<SystemHandle<HKEY>>;

struct FileHandleKind {
  using Handle = HANDLE;
  static Handle none() { return INVALID_HANDLE_VALUE; }  // what CreateFile gives when it fails
  static void close(Handle file) { CloseHandle(file); }
};
using FileHandle = UniqueHandle<FileHandleKind>;

}  // namespace velk
