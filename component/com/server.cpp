#include "component/com/server.h"

#include <windows.h>

#include <atomic>

#include "platform/windows/module_path.h"

namespace velk {

namespace {

// One count for the process, because the process asks whether the DLL may go.
std::atomic<long> locks{0};

}  // namespace

ServerLock::ServerLock() {
  acquire();
}
ServerLock::~ServerLock() {
  release();
}
void ServerLock::acquire() {
  ++locks;
}
void ServerLock::release() {
  --locks;
}

bool serverInUse() {
  return locks != 0;
}

std::wstring serverPath() {
  constexpr DWORD whose =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  HMODULE dll = nullptr;
  GetModuleHandleExW(whose, reinterpret_cast<const wchar_t*>(&serverInUse), &dll);
  return modulePath(dll);
}

}  // namespace velk
