#include "ui/property_bag.h"

#include <algorithm>

#include "base/errors.h"
#include "base/text.h"

namespace velk {

namespace {

Value convertLike(const Value& model, const Value& value) {
  if (std::holds_alternative<std::int32_t>(model)) return toInt32(value);
  if (std::holds_alternative<std::string>(model)) return toText(value);
  return value;
}

}  // namespace

void PropertyBag::declare(std::initializer_list<Property> properties) {
  properties_.insert(properties_.end(), properties);
}

// The number of properties when there is none of that name.
std::size_t PropertyBag::indexOf(std::string_view name) const {
  const auto found = std::ranges::find_if(
      properties_, [&](const Property& p) { return equalsIgnoringCase(p.name, name); });
  return static_cast<std::size_t>(found - properties_.begin());
}

const Value& PropertyBag::get(std::string_view name) const {
  const std::size_t index = indexOf(name);
  if (index == properties_.size()) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  return properties_[index].value;
}

const Property* PropertyBag::assign(std::string_view name, const Value& value) {
  const std::size_t index = indexOf(name);
  if (index == properties_.size()) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  Property& property = properties_[index];
  Value converted = convertLike(property.value, value);
  if (converted == property.value) return nullptr;
  property.value = std::move(converted);
  return &property;
}

void PropertyBag::set(std::string_view name, const Value& value) {
  if (const Property* changed = assign(name, value)) propertyChanged(changed->name);
}

std::int32_t PropertyBag::number(std::string_view name) const {
  return toInt32(get(name));
}

const std::string& PropertyBag::text(std::string_view name) const {
  const auto* text = std::get_if<std::string>(&get(name));
  if (text == nullptr) throw RuntimeError(ErrorNumber::TypeMismatch);
  return *text;
}

}  // namespace velk
