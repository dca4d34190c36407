// What every COM object is made of: reference count and interfaces.
#pragma once

#include <ole2.h>

#include <atomic>
#include <type_traits>

#include "platform/windows/com_pointer.h"
#include "platform/windows/module_lock.h"

namespace velk {

/// An object with these interfaces; the first one is its IUnknown. A dual interface answers for
/// IDispatch, too. It begins with one reference and deletes itself with the last;
/// until then it keeps its module loaded.
template <class First, class... Others>
class ComObject : public First, public Others... {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    const bool found = give<First>(iid, object) || (give<Others>(iid, object) || ...);
    if (!found) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~ComObject() = default;

 private:
  template <class Interface>
  bool give(REFIID iid, void** object) {
    const bool dual = std::is_base_of_v<IDispatch, Interface> && iid == __uuidof(IDispatch);
    if (iid != __uuidof(Interface) && iid != __uuidof(IUnknown) && !dual) return false;
    *object = static_cast<Interface*>(this);
    return true;
  }

  [[no_unique_address]] ModuleLock lock_;
  std::atomic<ULONG> references_{1};
};

template <class Object, class... Arguments>
ComPtr<Object> makeObject(Arguments&&... arguments) {
  return adopt(new Object(std::forward<Arguments>(arguments)...));
}

}  // namespace velk
