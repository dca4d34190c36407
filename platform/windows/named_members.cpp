#include "platform/windows/named_members.h"

#include <algorithm>

#include "base/text.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

void NamedMembers::put(std::string_view, const Value&) {
  throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
}

HRESULT NamedMembers::GetTypeInfoCount(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT NamedMembers::GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept {
  return DISP_E_BADINDEX;
}

DISPID NamedMembers::idOf(std::string_view name) {
  const auto found = std::ranges::find_if(
      names_, [&](const std::string& known) { return equalsIgnoringCase(known, name); });
  const auto place = found - names_.begin();
  if (found == names_.end()) {
    if (!has(name)) return DISPID_UNKNOWN;
    names_.emplace_back(name);
  }
  return static_cast<DISPID>(place + 1);
}

std::string NamedMembers::nameOf(DISPID id) const {
  if (id == DISPID_VALUE && has(defaultMember)) return std::string(defaultMember);
  if (id < 1 || static_cast<std::size_t>(id) > names_.size()) {
    throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  }
  return names_[static_cast<std::size_t>(id) - 1];
}

HRESULT NamedMembers::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                    DISPID* ids) noexcept {
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID_UNKNOWN);  // arguments have no names
  const HRESULT result = guarded([&] { ids[0] = idOf(fromWide(names[0])); }, toHresult);
  if (FAILED(result)) return result;
  return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT NamedMembers::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                             VARIANT* result, EXCEPINFO* exception, UINT*) noexcept {
  if (parameters == nullptr) return E_POINTER;
  if (parameters->cArgs > 1) return DISP_E_BADPARAMCOUNT;
  return guarded(
      [&] {
        std::optional<Value> argument;
        if (parameters->cArgs == 1) argument = toValue(parameters->rgvarg[0]);
        const std::string name = nameOf(id);
        if ((kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
          put(name, argument.value_or(Null{}));
        } else {
          Variant got = get(name, argument);
          if (result != nullptr) *result = got.release();
        }
      },
      [&](const RuntimeError& error) { return fillIn(exception, error); });
}

}  // namespace velk
