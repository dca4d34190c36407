#include "component/com/server.h"

#include <windows.h>

#include <atomic>

#include "platform/windows/module_path.h"

extern "C" const IMAGE_DOS_HEADER __ImageBase;

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
  return modulePath(reinterpret_cast<HMODULE>(const_cast<IMAGE_DOS_HEADER*>(&__ImageBase)));
}

}  // namespace velk
