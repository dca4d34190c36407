// Named, typed properties: what a control or a form offers to code that knows it only by name, such
// as painting by type name and a host that reads a screen through automation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/values.h"

namespace velk {

struct Property {
  std::string_view name;  ///< a literal: it outlives every bag
  Value value;
};

class PropertyBag {
 public:
  virtual ~PropertyBag() = default;
  PropertyBag(const PropertyBag&) = delete;
  PropertyBag& operator=(const PropertyBag&) = delete;

  /// Names are found in any letter case. Error 438 where there is no such property.
  const Value& get(std::string_view name) const;
  /// The value is converted to the kind that the property holds (number or text); errors 13, 6 and
  /// 94 as toInt32. Tells propertyChanged only when the value became another.
  void set(std::string_view name, const Value& value);
  bool has(std::string_view name) const { return indexOf(name) < properties_.size(); }
  std::span<const Property> properties() const { return properties_; }

  std::int32_t number(std::string_view name) const;
  const std::string& text(std::string_view name) const;
  bool flag(std::string_view name) const { return number(name) != 0; }
  void setFlag(std::string_view name, bool value) { set(name, value ? flagTrue : flagFalse); }

  /// True and false as automation writes them.
  static constexpr std::int32_t flagTrue = -1;
  static constexpr std::int32_t flagFalse = 0;

 protected:
  PropertyBag() = default;
  void declare(std::initializer_list<Property> properties);
  /// As set, without telling propertyChanged.
  void setQuietly(std::string_view name, const Value& value) { assign(name, value); }
  virtual void propertyChanged(std::string_view name) = 0;

 private:
  /// The property when its value became another, else null.
  const Property* assign(std::string_view name, const Value& value);
  std::size_t indexOf(std::string_view name) const;

  std::vector<Property> properties_;
};

}  // namespace velk
