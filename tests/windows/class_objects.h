// Makes an object of the test's stand for a registered class, in this process.
#pragma once

#include "platform/windows/com_object.h"
#include "tests/support/checks.h"

namespace velk {

/// The class of the host's service object.
inline constexpr CLSID serviceClass = {
    0x2F54E293, 0x7499, 0x4B89, {0x9A, 0x2E, 0xE7, 0x83, 0x42, 0x00, 0x7F, 0x59}};

/// While it lives, creating the class gives this one object.
class ClassObject {
 public:
  ClassObject(REFCLSID id, IUnknown* object) {
    const auto factory = makeObject<Factory>(object);
    REQUIRE(CoRegisterClassObject(id, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                  &cookie_) == S_OK);
  }
  ~ClassObject() { CoRevokeClassObject(cookie_); }
  ClassObject(const ClassObject&) = delete;
  ClassObject& operator=(const ClassObject&) = delete;

 private:
  class Factory final : public ComObject<IClassFactory> {
   public:
    explicit Factory(IUnknown* object) : object_(ComPtr<IUnknown>(object)) {}
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid,
                                             void** object) noexcept override {
      return object_->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

   private:
    ComPtr<IUnknown> object_;
  };

  DWORD cookie_ = 0;
};

}  // namespace velk
