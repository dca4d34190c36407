#include "platform/windows/module_lock.h"

#include <atomic>

namespace velk {

namespace {

// One count for the process, because the process asks whether a DLL may go.
// NOLINTNEXTLINE(*-avoid-non-const-global-variables)
std::atomic<long> locks{0};

}  // namespace

void ModuleLock::acquire() {
  ++locks;
}
void ModuleLock::release() {
  --locks;
}

bool moduleInUse() {
  return locks != 0;
}

}  // namespace velk
