// Automation objects whose members are known by name only, at run time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "base/values.h"
#include "platform/windows/com_object.h"
#include "platform/windows/variants.h"

namespace velk {

/// A derived class says which members it has and reads and writes them; errors that it throws reach
/// the caller as exception information.
class NamedMembers : public ComObject<IDispatch> {
 public:
  /// The member that a call without a name means.
  static constexpr std::string_view defaultMember = "Item";

  virtual bool has(std::string_view name) const = 0;
  /// `index` is the argument of the call, if there was one. The name is one that `has` knows.
  virtual Variant get(std::string_view name, const std::optional<Value>& index) = 0;
  /// Error 438 for what can't be written.
  virtual void put(std::string_view name, const Value& value);

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) noexcept override;

 private:
  DISPID idOf(std::string_view name);
  std::string nameOf(DISPID id) const;

  std::vector<std::string> names_;  // asked for so far; a member's id is its place from 1
};

/// The object that a weak reference names; error 91 when it is gone.
template <class Object>
std::shared_ptr<Object> lock(const std::weak_ptr<Object>& object) {
  auto locked = object.lock();
  if (locked == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
  return locked;
}

}  // namespace velk
