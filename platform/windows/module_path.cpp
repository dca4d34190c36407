#include "platform/windows/module_path.h"

namespace velk {

// By an address within it, because its file may have any name.
HINSTANCE thisModule() {
  // UNCHANGED_REFCOUNT: no one would give the reference back.
  constexpr DWORD whose =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  HMODULE module = nullptr;
  GetModuleHandleExW(whose, reinterpret_cast<const wchar_t*>(&thisModule), &module);
  return module;
}

std::wstring modulePath(HMODULE module) {
  std::wstring path(MAX_PATH, L'\0');
  // Windows cuts a path that is too long for the buffer and does not say how long it is.
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(2 * path.size());
  }
}

}  // namespace velk
