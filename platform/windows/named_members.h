// Automation objects whose members are known by name only, at run time.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "base/errors.h"
#include "base/values.h"
#include "platform/windows/com_object.h"
#include "platform/windows/variants.h"

namespace velk {

/// A derived class says which members it has and reads and writes them; errors that it throws reach
/// the caller as exception information.
class NamedMembers : public ComObject<IDispatch> {
 public:
  /// The member of that name, which is found in any letter case; DISPID_VALUE for the one that a
  /// call without a name means, DISPID_UNKNOWN where there is none.
  virtual DISPID idOf(std::string_view name) const = 0;
  /// `index` is the argument of the call, if there was one and the member takes it. Error 438 for a
  /// member that is none.
  virtual Variant get(DISPID member, const std::optional<Value>& index) = 0;
  /// A call of another member with an index is error 450.
  virtual bool takesIndex(DISPID /*member*/) const { return false; }
  /// Error 438 for what can't be written.
  virtual void put(DISPID member, const Value& value);
  /// The same for an object; null is Nothing.
  virtual void putObject(DISPID member, IUnknown* object);
  virtual bool isMethod(DISPID /*member*/) const { return false; }
  /// Arguments in their order, null for those left out. Error 438 for what is no method.
  virtual void call(DISPID member, std::span<const Value> arguments);

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) noexcept override;
};

/// The object that a weak reference names; error 91 when it is gone.
template <class Object>
std::shared_ptr<Object> lock(const std::weak_ptr<Object>& object) {
  auto locked = object.lock();
  if (locked == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
  return locked;
}

}  // namespace velk
