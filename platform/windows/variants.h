// Values as COM carries them.
#pragma once

#include <ole2.h>

#include <span>
#include <string>
#include <vector>

#include "base/values.h"

namespace velk {

/// English, whatever the machine's: numbers have a decimal point, and members of objects and
/// formats of numbers are spelled as programs spell them.
inline constexpr LCID programLocale = 0x0409;

constexpr VARIANT_BOOL toVariantBool(bool flag) {
  return flag ? VARIANT_TRUE : VARIANT_FALSE;
}

/// Owns one VARIANT; empty when default constructed.
class Variant {
 public:
  Variant() { VariantInit(&variant_); }
  /// Null, a 32-bit integer, a double, a date or a BSTR.
  explicit Variant(const Value& value);
  explicit Variant(bool flag);
  /// An object; a reference is added.
  explicit Variant(IDispatch* object);
  explicit Variant(IUnknown* object);
  /// Arrays from 0 on, possibly empty: of BSTR, and of VARIANT.
  explicit Variant(const std::vector<std::string>& texts);
  explicit Variant(std::span<const Value> values);
  /// An optional argument left out.
  static Variant missing();
  /// A copy, by-reference contents taken along. Raises what VariantCopyInd refuses.
  static Variant copyOf(const VARIANT& source);

  Variant(Variant&& other) noexcept : variant_(other.release()) {}
  Variant& operator=(Variant&& other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Variant() { VariantClear(&variant_); }

  const VARIANT& get() const { return variant_; }
  VARIANT* receive() {
    VariantClear(&variant_);
    return &variant_;
  }
  /// Hands the contents to the caller.
  VARIANT release();

 private:
  template <class Element>
  std::span<Element> makeArray(VARTYPE type, std::size_t count);

  VARIANT variant_;
};

/// What a field or a result holds. Empty counts as null; a Boolean is the text "True" or "False";
/// currency and decimal are texts with a point; what exceeds 32 bits is a double when exact, else
/// text. Error 13 for an object, an array or an error code.
Value toValue(const VARIANT& variant);

}  // namespace velk
