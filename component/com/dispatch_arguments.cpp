#include "component/com/dispatch_arguments.h"

#include "base/errors.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

void DispatchArguments::refuse(HRESULT result, UINT place) const {
  if (badArgument_ != nullptr) *badArgument_ = place;
  throw comError(result);
}

// Named arguments come first, the others behind them, last one first.
UINT DispatchArguments::placeOf(UINT position) const {
  for (UINT place = 0; place < passed_.cNamedArgs; ++place) {
    const DISPID name = passed_.rgdispidNamedArgs[place];
    const DISPID meant = name == DISPID_PROPERTYPUT ? 0 : name;
    if (meant == static_cast<DISPID>(position)) return place;
  }
  if (position >= passed_.cArgs - passed_.cNamedArgs) refuse(DISP_E_PARAMNOTOPTIONAL, 0);
  return passed_.cArgs - 1 - position;
}

Variant DispatchArguments::converted(UINT position, VARTYPE type) const {
  const UINT place = placeOf(position);
  Variant result;
  const HRESULT outcome =
      VariantChangeTypeEx(result.receive(), &passed_.rgvarg[place], locale_, 0, type);
  if (FAILED(outcome)) refuse(outcome, place);
  return result;
}

std::string DispatchArguments::text(UINT position) const {
  return Bstr::textOf(converted(position, VT_BSTR).get().bstrVal);
}

ComPtr<IUnknown> DispatchArguments::object(UINT position) const {
  const UINT place = placeOf(position);
  const Variant value = Variant::copyOf(passed_.rgvarg[place]);
  const VARTYPE type = value.get().vt;
  if (type != VT_DISPATCH && type != VT_UNKNOWN) refuse(DISP_E_TYPEMISMATCH, place);
  return ComPtr<IUnknown>(value.get().punkVal);
}

bool isDispatchError(std::int32_t number) {
  return number >= DISP_E_UNKNOWNINTERFACE && number <= DISP_E_BADCALLEE;
}

}  // namespace velk
