#include "component/com/server.h"

#include <windows.h>

#include <atomic>

#include "platform/windows/module_path.h"

namespace velk {

namespace {

// NOLINTNEXTLINE(*-avoid-non-const-global-variables)
std::atomic<bool> kept{false};

}  // namespace

void keepLoaded() {
  // One reference is enough, however many screens open.
  if (kept.exchange(true)) return;
  HMODULE self = nullptr;
  const BOOL held = GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                       reinterpret_cast<LPCWSTR>(&kept), &self);
  // letGo must not give back a reference that was never taken.
  if (held == FALSE) kept = false;
}

void letGo() {
  if (kept.exchange(false)) FreeLibrary(thisModule());
}

std::wstring serverPath() {
  return modulePath(thisModule());
}

}  // namespace velk
