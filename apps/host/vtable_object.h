// What every COM object of this program is made of: a vtable whose unused members answer E_NOTIMPL,
// automation by name among them, and error information.
#pragma once

#include <ole2.h>

#include <ado_com.h>
#include <unused_members.h>

#include <utility>

#include "platform/windows/com_errors.h"
#include "platform/windows/com_object.h"

namespace velk {

/// `Unused` fills the members that a derived class does not have.
template <template <class> class Unused, class Interface, class... Others>
class VtableObject : public Unused<ComObject<Interface, ISupportErrorInfo, Others...>> {
 public:
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return iid == __uuidof(Interface) ? S_OK : S_FALSE;
  }

 protected:
  /// Each member runs inside this.
  template <class Body>
  static HRESULT run(Body&& body) noexcept {
    return guarded(std::forward<Body>(body), [](const RuntimeError& error) {
      return reportError(error, __uuidof(Interface), L"Opening import host");
    });
  }
  /// Gives the caller a value, whose address may not be null.
  template <class Value, class Make>
  static HRESULT give(Value* to, Make&& make) noexcept {
    if (to == nullptr) return E_POINTER;
    return run([&] { *to = std::forward<Make>(make)(); });
  }
};

}  // namespace velk
