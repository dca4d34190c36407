// Peer of the component's DLL: loads, and has no class objects.
#include <objbase.h>

extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE
    DllGetClassObject(REFCLSID, REFIID, void**) {
  return CLASS_E_CLASSNOTAVAILABLE;
}
