// The handles that only the tour owns.
#pragma once

#include "platform/windows/handles.h"

namespace velk {

struct KernelObject : SystemHandle<HANDLE> {
  static void close(HANDLE object) { CloseHandle(object); }
};
struct Bitmap : SystemHandle<HBITMAP> {
  static void close(HBITMAP bitmap) { DeleteObject(bitmap); }
};
struct MemoryDc : SystemHandle<HDC> {
  static void close(HDC dc) { DeleteDC(dc); }
};
using UniqueKernelObject = UniqueHandle<KernelObject>;
using UniqueBitmap = UniqueHandle<Bitmap>;
using UniqueMemoryDc = UniqueHandle<MemoryDc>;

}  // namespace velk
