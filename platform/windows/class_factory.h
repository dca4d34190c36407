// Makes the objects of a class for COM.
#pragma once

#include <ole2.h>

#include <functional>
#include <utility>

#include "platform/windows/com_errors.h"
#include "platform/windows/com_object.h"
#include "platform/windows/module_lock.h"

namespace velk {

class ClassFactory : public ComObject<IClassFactory> {
 public:
  /// Gives a new object, or the same one each time.
  using Make = std::function<ComPtr<IUnknown>()>;

  explicit ClassFactory(Make make) : make_(std::move(make)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                           void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return guarded([&] { check(make_()->QueryInterface(iid, object)); }, toHresult);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    lock != FALSE ? ModuleLock::acquire() : ModuleLock::release();
    return S_OK;
  }

 private:
  Make make_;
};

}  // namespace velk
