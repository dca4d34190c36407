#include "component/com/class_factory.h"

#include "component/com/clsopnimp_object.h"
#include "platform/windows/com_errors.h"

namespace velk {

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return guarded([&] { check(makeObject<ClsOpnImpObject>()->QueryInterface(iid, object)); },
                 toHresult);
}

HRESULT ClassFactory::LockServer(BOOL lock) noexcept {
  if (lock != FALSE) {
    ServerLock::acquire();
  } else {
    ServerLock::release();
  }
  return S_OK;
}

}  // namespace velk
