// Handles of Windows that are closed at their owner's end.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

namespace velk {

struct FileHandleKind {
  using Handle = HANDLE;
  static Handle none() { return INVALID_HANDLE_VALUE; }  // what CreateFile gives when it fails
  static void close(Handle file) { CloseHandle(file); }
};
using FileHandle = UniqueHandle<FileHandleKind>;

struct RegistryKeyKind {
  using Handle = HKEY;
  static Handle none() { return nullptr; }
  static void close(Handle key) { RegCloseKey(key); }
};
using RegistryKey = UniqueHandle<RegistryKeyKind>;

}  // namespace velk
