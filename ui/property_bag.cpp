#include "ui/property_bag.h"

#include <cmath>
#include <utility>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

// A property keeps the kind of value that it was declared with, so that a colour written as text is
// still a number for those who paint with it.
Value convertLike(const Value& model, const Value& value) {
  if (std::holds_alternative<std::int32_t>(model)) return toInt32(value);
  if (std::holds_alternative<double>(model)) {
    const double number = toDouble(value);
    if (!std::isfinite(number)) throw RuntimeError(ErrorNumber::InvalidPropertyValue);
    return number;
  }
  if (std::holds_alternative<std::string>(model)) return toText(value);
  return value;
}

// A Boolean travels as its text.
std::int32_t toFlag(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    if (equalsIgnoringCase(*text, "True")) return PropertyBag::flagTrue;
    if (equalsIgnoringCase(*text, "False")) return PropertyBag::flagFalse;
  }
  return toDouble(value) != 0 ? PropertyBag::flagTrue : PropertyBag::flagFalse;
}

}  // namespace

PropertyBag::PropertyBag(std::string_view name, const Bounds& bounds, bool visible) {
  declare({{Property::Name, std::string(name)},
           {Property::Visible, visible ? flagTrue : flagFalse},
           {Property::Left, bounds.left},
           {Property::Top, bounds.top},
           {Property::Width, bounds.width},
           {Property::Height, bounds.height}});
}

const Value& PropertyBag::get(Property property) const {
  const auto found = values_.find(property);
  if (found == values_.end()) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  return found->second;
}

bool PropertyBag::setQuietly(Property property, const Value& value) {
  // get() refuses a property that does not exist, before [] would create it.
  const Value& before = get(property);
  Value converted = isFlag(property) ? Value(toFlag(value)) : convertLike(before, value);
  Value& held = values_[property];
  if (converted == held) return false;
  held = std::move(converted);
  return true;
}

void PropertyBag::set(Property property, const Value& value) {
  if (setQuietly(property, value)) propertyChanged(property);
}

std::int32_t PropertyBag::number(Property property) const {
  return toInt32(get(property));
}

const std::string& PropertyBag::text(Property property) const {
  const auto* text = std::get_if<std::string>(&get(property));
  if (text == nullptr) throw RuntimeError(ErrorNumber::TypeMismatch);
  return *text;
}

Bounds PropertyBag::bounds() const {
  return {number(Property::Left), number(Property::Top), number(Property::Width),
          number(Property::Height)};
}

}  // namespace velk
