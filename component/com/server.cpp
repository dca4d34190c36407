#include "component/com/server.h"

#include <windows.h>

#include <atomic>

#include "platform/windows/module_path.h"

namespace velk {

namespace {

// One count for the process, because the process asks whether the DLL may go.
// NOLINTBEGIN(*-avoid-non-const-global-variables)
std::atomic<long> locks{0};
std::atomic<bool> kept{false};
// NOLINTEND(*-avoid-non-const-global-variables)

}  // namespace

void ServerLock::acquire() {
  ++locks;
}
void ServerLock::release() {
  --locks;
}

bool serverInUse() {
  return locks != 0;
}

void keepLoaded() {
  // One reference is enough, however many screens open.
  if (kept.exchange(true)) return;
  HMODULE self = nullptr;
  const BOOL held = GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                       reinterpret_cast<LPCWSTR>(&locks), &self);
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
