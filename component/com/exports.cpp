// What the DLL exports.
#include <ole2.h>

#include <Velk_OpnImp_com.h>

#include "component/com/class_factory.h"
#include "component/com/registration.h"
#include "component/com/server.h"
#include "platform/windows/com_errors.h"

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (classId != __uuidof(Velk_ClsOpnImp)) return CLASS_E_CLASSNOTAVAILABLE;
  const auto create = [&] {
    velk::check(velk::makeObject<velk::ClassFactory>()->QueryInterface(iid, object));
  };
  return velk::guarded(create, velk::toHresult);
}

STDAPI DllCanUnloadNow() {
  if (velk::serverInUse()) return S_FALSE;
  velk::letGo();
  return S_OK;
}

STDAPI DllRegisterServer() {
  return velk::guarded(velk::registerServer, velk::toHresult);
}

STDAPI DllUnregisterServer() {
  return velk::guarded(velk::unregisterServer, velk::toHresult);
}
