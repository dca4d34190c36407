// The handles that the tour owns.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

namespace velk {

namespace tourHandle {

struct KernelObject {
  using Handle = HANDLE;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { CloseHandle(handle); }
};

struct Bitmap {
  using Handle = HBITMAP;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { DeleteObject(handle); }
};

struct MemoryDc {
  using Handle = HDC;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { DeleteDC(handle); }
};

struct DisplayDc {
  using Handle = HDC;
  static Handle none() { return nullptr; }
  static void close(Handle handle) { ReleaseDC(nullptr, handle); }
};

}  // namespace tourHandle

using UniqueKernelObject = UniqueHandle<tourHandle::KernelObject>;
using UniqueBitmap = UniqueHandle<tourHandle::Bitmap>;
using UniqueMemoryDc = UniqueHandle<tourHandle::MemoryDc>;
using UniqueDisplayDc = UniqueHandle<tourHandle::DisplayDc>;

}  // namespace velk
