// What the DLL exports.
#include <ole2.h>

#include <Velk_OpnImp_com.h>

#include "component/com/clsopnimp_object.h"
#include "component/com/registration.h"
#include "component/com/server.h"
#include "component/com/thread_support.h"
#include "platform/windows/class_factory.h"
#include "platform/windows/module_lock.h"

// The run-time's reserve for exceptions without memory; its headers declare this nowhere.
namespace __gnu_cxx {
void __freeres();  // NOLINT(bugprone-reserved-identifier): its own name
}

// What a DLL leaves behind when it goes grows with each time that the host loads it.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* processEnds) {
  // With the process all goes anyway, and its other threads may have ended holding a lock.
  if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
    velk::freeThreadValues();
    __gnu_cxx::__freeres();
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  // COM demands null with every failure.
  *object = nullptr;
  if (classId != __uuidof(Velk_ClsOpnImp)) return CLASS_E_CLASSNOTAVAILABLE;
  const auto create = [&] {
    using namespace velk;
    // QueryInterface adds the caller's reference; that of makeObject ends with this line.
    check(makeObject<ClassFactory>(clsOpnImpObject)->QueryInterface(iid, object));
  };
  return velk::guarded(create, velk::toHresult);
}

STDAPI DllCanUnloadNow() {
  if (velk::moduleInUse()) return S_FALSE;
  // COM lets go after this answer; with a reference of its own the DLL would stay for ever.
  velk::letGo();
  return S_OK;
}

STDAPI DllRegisterServer() {
  return velk::guarded([] { velk::registerServer(); }, velk::toHresult);
}

STDAPI DllUnregisterServer() {
  return velk::guarded([] { velk::unregisterServer(); }, velk::toHresult);
}

// regsvr32 /n /i:user, or /i:machine.
STDAPI DllInstall(BOOL install, LPCWSTR scope) {
  if (scope == nullptr) return E_INVALIDARG;
  const auto change = [&] {
    install != FALSE ? velk::registerServer(scope) : velk::unregisterServer(scope);
  };
  return velk::guarded(change, velk::toHresult);
}
