// The component's DLL as a host loads it, and calls on its objects.
#pragma once

#include <ole2.h>

#include <Velk_OpnImp_com.h>

#include <filesystem>
#include <string>

#include "platform/windows/com_errors.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"
#include "tests/support/checks.h"

namespace velk {

/// The folder of the test program; the DLL and its manifest lie there, too.
inline std::filesystem::path programFolder() {
  return std::filesystem::path(modulePath(nullptr)).parent_path();
}

/// Loaded without COM knowing of it.
class ServerDll {
 public:
  explicit ServerDll(const std::filesystem::path& file = programFolder() / "Velk_OpnImp.dll")
      : dll_(LoadLibraryW(file.c_str())) {
    REQUIRE(dll_ != nullptr);
  }
  ~ServerDll() { FreeLibrary(dll_); }
  ServerDll(const ServerDll&) = delete;
  ServerDll& operator=(const ServerDll&) = delete;

  HRESULT call(const char* function) const {
    return exported<HRESULT STDAPICALLTYPE()>(function)();
  }

  HRESULT install(BOOL install, const wchar_t* scope) const {
    return exported<HRESULT STDAPICALLTYPE(BOOL, LPCWSTR)>("DllInstall")(install, scope);
  }

  ComPtr<IClassFactory> factory() const {
    ComPtr<IClassFactory> factory;
    const auto get =
        exported<HRESULT STDAPICALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
    REQUIRE(get(__uuidof(::Velk_ClsOpnImp), IID_PPV_ARGS(factory.GetAddressOf())) == S_OK);
    return factory;
  }
  ComPtr<_Velk_ClsOpnImp> makeObject() const {
    ComPtr<_Velk_ClsOpnImp> object;
    REQUIRE(factory()->CreateInstance(nullptr, IID_PPV_ARGS(object.GetAddressOf())) == S_OK);
    return object;
  }

 private:
  template <class Function>
  Function* exported(const char* name) const {
    auto* const found =
        reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(dll_, name)));
    REQUIRE((found != nullptr));
    return found;
  }

  HMODULE dll_;
};

/// While it lives, this thread finds the class as a host with a manifest does.
class KnownByManifest {
 public:
  KnownByManifest() {
    ACTCTXW context{};
    context.cbSize = sizeof context;
    const std::wstring manifest = programFolder() / "host.manifest";
    context.lpSource = manifest.c_str();
    context_ = CreateActCtxW(&context);
    REQUIRE(context_ != INVALID_HANDLE_VALUE);
    REQUIRE(ActivateActCtx(context_, &cookie_) != FALSE);
  }
  ~KnownByManifest() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }
  KnownByManifest(const KnownByManifest&) = delete;
  KnownByManifest& operator=(const KnownByManifest&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
};

/// The reference count of an object.
inline ULONG references(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

}  // namespace velk
