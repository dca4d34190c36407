// COM objects whose members say what went wrong.
#pragma once

#include <ole2.h>

#include <utility>

#include "platform/windows/com_errors.h"
#include "platform/windows/com_object.h"

namespace velk {

/// Members run inside `run` or `give`, which set the thread's error information when they fail;
/// callers see `source` as its origin.
template <const wchar_t* source, class Interface, class... Others>
class ReportingObject : public ComObject<Interface, ISupportErrorInfo, Others...> {
 public:
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return iid == __uuidof(Interface) ? S_OK : S_FALSE;
  }

 protected:
  template <class Body>
  static HRESULT run(Body&& body) noexcept {
    return guarded(std::forward<Body>(body), [](const RuntimeError& error) {
      return reportError(error, __uuidof(Interface), source);
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
