#include "platform/windows/late_binding.h"

#include <algorithm>
#include <iterator>

#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

DISPID memberId(IDispatch& object, std::string_view name) {
  std::wstring wide = toWide(name);
  wchar_t* names = wide.data();
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object.GetIDsOfNames(IID_NULL, &names, 1, programLocale, &id);
  if (result == DISP_E_UNKNOWNNAME) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  check(result);
  return id;
}

/// The strings of an EXCEPINFO are the receiver's to free.
struct Exception : EXCEPINFO {
  Exception() : EXCEPINFO() {}
  ~Exception() {
    for (BSTR text : {bstrSource, bstrDescription, bstrHelpFile}) SysFreeString(text);
  }
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;

  RuntimeError error() {
    // Some objects fill in the description only if the caller wants it.
    if (pfnDeferredFillIn != nullptr) pfnDeferredFillIn(this);
    std::string description = Bstr::textOf(bstrDescription);
    // An object gives either a number of its own or an HRESULT.
    if (wCode != 0) return {wCode, std::move(description)};
    return comError(scode, std::move(description));
  }
};

}  // namespace

Variant callMember(IDispatch* object, std::string_view name, WORD kind,
                   const std::vector<Variant>& arguments) {
  if (object == nullptr) throw RuntimeError(ErrorNumber::ObjectNotSet);
  // They travel last one first.
  // Plain copies: the arguments still own what they contain.
  std::vector<VARIANT> passed;
  std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(passed),
                 [](const Variant& argument) { return argument.get(); });
  DISPID put = DISPID_PROPERTYPUT;  // the name under which a property's new value travels
  DISPPARAMS parameters{passed.data(), nullptr, static_cast<UINT>(passed.size()), 0};
  if ((kind & DISPATCH_PROPERTYPUT) != 0) {
    parameters.rgdispidNamedArgs = &put;
    parameters.cNamedArgs = 1;
  }
  Variant result;
  Exception exception;
  const HRESULT outcome = object->Invoke(memberId(*object, name), IID_NULL, programLocale, kind,
                                         &parameters, result.receive(), &exception, nullptr);
  if (outcome == DISP_E_EXCEPTION) throw exception.error();
  if (outcome == DISP_E_MEMBERNOTFOUND) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  check(outcome);
  return result;
}

ComPtr<IDispatch> heldObject(const Variant& variant) {
  const VARIANT& held = variant.get();
  if (held.vt != VT_DISPATCH && held.vt != VT_UNKNOWN) {
    throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  }
  auto found = queryInterface<IDispatch>(held.punkVal);
  if (!found) throw RuntimeError(ErrorNumber::ObjectNotSet);
  return found;
}

ComPtr<IDispatch> memberObject(IDispatch* object, std::string_view name,
                               const std::vector<Variant>& arguments) {
  return heldObject(callMember(object, name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments));
}

}  // namespace velk
