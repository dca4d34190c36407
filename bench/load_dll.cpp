// Loads a DLL as COM does and asks it for a class object: the component's, or bare_dll.cpp's. The
// libraries of Windows that the component uses are loaded before, as in a host with windows.
//
//   bench_load_dll DLL
#include <windows.h>

#include <ole2.h>

#include <Velk_OpnImp_com.h>

#include "bench/measurement.h"

using namespace velk::bench;

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 2, "usage: bench_load_dll DLL");
    using GetClassObject = HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**);
    for (const char* library : {"comctl32", "comdlg32", "oleaut32", "shell32"}) {
      require(LoadLibraryA(library) != nullptr, "a library of Windows can't be loaded");
    }
    void* object = nullptr;
    Stopwatch watch;
    const HMODULE dll = LoadLibraryA(argv[1]);
    require(dll != nullptr, "the DLL can't be loaded");
    auto* const ask = reinterpret_cast<GetClassObject*>(
        reinterpret_cast<void*>(GetProcAddress(dll, "DllGetClassObject")));
    require(ask != nullptr, "the DLL has no class objects");
    ask(__uuidof(::Velk_ClsOpnImp), __uuidof(IClassFactory), &object);
    watch.stop();
    watch.report(1);
  });
}
