#include "platform/windows/variants.h"

#include <algorithm>
#include <utility>

#include "base/errors.h"
#include "base/numbers.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

void put(VARIANT& to, Null) {
  to.vt = VT_NULL;
}
void put(VARIANT& to, std::int32_t number) {
  to.vt = VT_I4;
  to.lVal = number;
}
void put(VARIANT& to, double number) {
  to.vt = VT_R8;
  to.dblVal = number;
}
void put(VARIANT& to, Date date) {
  to.vt = VT_DATE;
  to.date = date.days;
}
void put(VARIANT& to, const std::string& text) {
  to.bstrVal = Bstr(text).release();  // first: without memory the variant stays empty
  to.vt = VT_BSTR;
}

// The user's own settings must not change how a number is spelled.
Variant converted(const VARIANT& variant, VARTYPE type) {
  Variant result;
  check(VariantChangeTypeEx(result.receive(), const_cast<VARIANT*>(&variant), programLocale,
                            VARIANT_NOUSEROVERRIDE, type));
  return result;
}

std::string asText(const VARIANT& variant) {
  return Bstr::textOf(converted(variant, VT_BSTR).get().bstrVal);
}

// What no double holds exactly stays a text, digit for digit.
template <class Integer>
Value integer(const VARIANT& variant, Integer number) {
  if (std::in_range<std::int32_t>(number)) return static_cast<std::int32_t>(number);
  return fitsDouble(number) ? Value(static_cast<double>(number)) : Value(asText(variant));
}

}  // namespace

Variant::Variant(const Value& value) : Variant() {
  std::visit([this](const auto& held) { put(variant_, held); }, value);
}

Variant::Variant(bool flag) : Variant() {
  variant_.vt = VT_BOOL;
  variant_.boolVal = toVariantBool(flag);
}

Variant::Variant(IDispatch* object) : Variant() {
  variant_.vt = VT_DISPATCH;
  variant_.pdispVal = object;
  // The destructor's VariantClear gives this reference back.
  if (object != nullptr) object->AddRef();
}

Variant::Variant(IUnknown* object) : Variant() {
  variant_.vt = VT_UNKNOWN;
  variant_.punkVal = object;
  if (object != nullptr) object->AddRef();
}

template <class Element>
std::span<Element> Variant::makeArray(VARTYPE type, std::size_t count) {
  SAFEARRAY* const array = SafeArrayCreateVector(type, 0, static_cast<ULONG>(count));
  if (array == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  // Owned before it is filled, so that a failure half-way frees what is in it.
  variant_.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  variant_.parray = array;
  return {static_cast<Element*>(array->pvData), count};
}

Variant::Variant(const std::vector<std::string>& texts) : Variant() {
  // The array frees its strings itself, so they are handed over.
  std::ranges::transform(texts, makeArray<BSTR>(VT_BSTR, texts.size()).begin(),
                         [](const std::string& text) { return Bstr(text).release(); });
}

Variant::Variant(std::span<const Value> values) : Variant() {
  std::ranges::transform(values, makeArray<VARIANT>(VT_VARIANT, values.size()).begin(),
                         [](const Value& value) { return Variant(value).release(); });
}

Variant Variant::missing() {
  Variant result;
  result.variant_.vt = VT_ERROR;
  // How Automation marks an optional argument that the caller left out.
  result.variant_.scode = DISP_E_PARAMNOTFOUND;
  return result;
}

Variant Variant::copyOf(const VARIANT& source) {
  Variant result;
  // The cast is safe: VariantCopyInd only reads its source.
  check(VariantCopyInd(&result.variant_, const_cast<VARIANT*>(&source)));
  return result;
}

VARIANT Variant::release() {
  VARIANT contents = variant_;
  // Not VariantClear: what it would free belongs to the caller now.
  VariantInit(&variant_);
  return contents;
}

Value toValue(const VARIANT& variant) {
  // A copy by value, so that each type needs one case below instead of two.
  if ((variant.vt & VT_BYREF) != 0) return toValue(Variant::copyOf(variant).get());
  switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return Null{};
    // All of these fit into 32 bits, so the conversion cannot overflow.
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_INT:
      return std::int32_t{converted(variant, VT_I4).get().lVal};
    case VT_UI4:
    case VT_UINT:
      return integer(variant, std::int64_t{variant.ulVal});
    case VT_I8:
      return integer(variant, variant.llVal);
    case VT_UI8:
      return integer(variant, variant.ullVal);
    case VT_R4:
      return double{variant.fltVal};
    case VT_R8:
      return variant.dblVal;
    case VT_DATE:
      return Date{variant.date};
    case VT_BOOL:
      return variant.boolVal != VARIANT_FALSE ? "True" : "False";
    case VT_CY:
    case VT_DECIMAL:  // a double would round it
      return asText(variant);
    case VT_BSTR:
      return Bstr::textOf(variant.bstrVal);
    default:
      throw RuntimeError(ErrorNumber::TypeMismatch);
  }
}

}  // namespace velk
