// The handles that the tour owns.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

namespace velk {

struct KernelObject {
  using Handle = HANDLE;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { CloseHandle(handle); }
};
using UniqueKernelObject = UniqueHandle<KernelObject>;

struct Bitmap {
  using Handle = HBITMAP;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { DeleteObject(handle); }
};
using UniqueBitmap = UniqueHandle<Bitmap>;

struct MemoryDc {
  using Handle = HDC;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { DeleteDC(handle); }
};
using UniqueMemoryDc = UniqueHandle<MemoryDc>;

struct DisplayDc {
  using Handle = HDC;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { ReleaseDC(nullptr, handle); }
};
using UniqueDisplayDc = UniqueHandle<DisplayDc>;

}  // namespace velk
