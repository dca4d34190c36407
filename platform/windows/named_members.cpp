#include "platform/windows/named_members.h"

#include <algorithm>
#include <vector>

#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

void NamedMembers::put(DISPID, const Value&) {
  throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
}

void NamedMembers::putObject(DISPID, IUnknown*) {
  throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
}

void NamedMembers::call(DISPID, std::span<const Value>) {
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

namespace {

// They travel last one first.
std::vector<Value> argumentsOf(const DISPPARAMS& parameters) {
  std::vector<Value> arguments;
  for (UINT i = parameters.cArgs; i-- > 0;) {
    const VARIANT& argument = parameters.rgvarg[i];
    const bool isLeftOut = argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
    arguments.push_back(isLeftOut ? Value(Null{}) : toValue(argument));
  }
  return arguments;
}

bool isObject(const VARIANT& argument) {
  const VARTYPE type = argument.vt == (VT_BYREF | VT_VARIANT) ? argument.pvarVal->vt : argument.vt;
  const auto plain = static_cast<VARTYPE>(type & ~VT_BYREF);
  return plain == VT_DISPATCH || plain == VT_UNKNOWN;
}

}  // namespace

HRESULT NamedMembers::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                             VARIANT* result, EXCEPINFO* exception, UINT*) noexcept {
  if (parameters == nullptr) return E_POINTER;
  return guarded(
      [&] {
        // Some callers say method and property at once; only a put is unmistakable.
        const bool isPut = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        if (isMethod(id) && !isPut) return call(id, argumentsOf(*parameters));
        // A new value or one index; no property takes more.
        const UINT most = isPut || takesIndex(id) ? 1 : 0;
        if (parameters->cArgs > most) throw RuntimeError(ErrorNumber::WrongNumberOfArguments);
        if (isPut && parameters->cArgs == 1 && isObject(parameters->rgvarg[0])) {
          return putObject(id, Variant::copyOf(parameters->rgvarg[0]).get().punkVal);
        }
        const std::vector<Value> arguments = argumentsOf(*parameters);
        if (isPut) return put(id, arguments.empty() ? Value(Null{}) : arguments[0]);
        Variant got = get(id, arguments.empty() ? std::nullopt : std::optional(arguments[0]));
        if (result != nullptr) *result = got.release();
      },
      [&](const RuntimeError& error) { return fillIn(exception, error); });
}

}  // namespace velk
