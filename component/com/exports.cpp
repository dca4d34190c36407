// What the DLL exports.
#include <ole2.h>

#include <Velk_OpnImp_com.h>

#include "component/com/clsopnimp_object.h"
#include "component/com/registration.h"
#include "component/com/server.h"
#include "platform/windows/class_factory.h"

namespace velk {

namespace {

/// The factory, too, keeps the DLL loaded: a host may hold one and make its objects later.
class ServerFactory final : public ClassFactory {
 public:
  using ClassFactory::ClassFactory;

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    lock != FALSE ? ServerLock::acquire() : ServerLock::release();
    return S_OK;
  }

 private:
  ServerLock lock_;
};

}  // namespace

}  // namespace velk

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  // COM demands null with every failure.
  *object = nullptr;
  if (classId != __uuidof(Velk_ClsOpnImp)) return CLASS_E_CLASSNOTAVAILABLE;
  const auto create = [&] {
    using namespace velk;
    // QueryInterface adds the caller's reference; that of makeObject ends with this line.
    check(makeObject<ServerFactory>(clsOpnImpObject)->QueryInterface(iid, object));
  };
  return velk::guarded(create, velk::toHresult);
}

STDAPI DllCanUnloadNow() {
  if (velk::serverInUse()) return S_FALSE;
  // COM lets go after this answer; with a reference of its own the DLL would stay for ever.
  velk::letGo();
  return S_OK;
}

STDAPI DllRegisterServer() {
  return velk::guarded(velk::registerServer, velk::toHresult);
}

STDAPI DllUnregisterServer() {
  return velk::guarded(velk::unregisterServer, velk::toHresult);
}
