#include "platform/windows/named_members.h"

#include <algorithm>

#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

void NamedMembers::put(DISPID, const Value&) {
  throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
}

// No type information: which members there are shows only at run time.
HRESULT NamedMembers::GetTypeInfoCount(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT NamedMembers::GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept {
  return DISP_E_BADINDEX;
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
  // A new value or one index; no member takes more.
  if (parameters->cArgs > 1) return DISP_E_BADPARAMCOUNT;
  return guarded(
      [&] {
        std::optional<Value> argument;
        if (parameters->cArgs == 1) argument = toValue(parameters->rgvarg[0]);
        // Some callers say method and property at once; only a put is unmistakable.
        if ((kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
          put(id, argument.value_or(Null{}));
        } else {
          Variant got = get(id, argument);
          if (result != nullptr) *result = got.release();
        }
      },
      [&](const RuntimeError& error) { return fillIn(exception, error); });
}

}  // namespace velk
