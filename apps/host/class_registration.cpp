#include "apps/host/class_registration.h"

#include <utility>

#include "platform/windows/com_errors.h"
#include "platform/windows/com_object.h"

namespace velk {

namespace {

class Factory final : public ComObject<IClassFactory> {
 public:
  explicit Factory(std::function<ComPtr<IUnknown>()> make) : make_(std::move(make)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                           void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return guarded([&] { check(make_()->QueryInterface(iid, object)); }, toHresult);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

 private:
  std::function<ComPtr<IUnknown>()> make_;
};

}  // namespace

ClassRegistration::ClassRegistration(REFCLSID classId, std::function<ComPtr<IUnknown>()> make) {
  const auto factory = makeObject<Factory>(std::move(make));
  check(CoRegisterClassObject(classId, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                              &cookie_));
}

}  // namespace velk
