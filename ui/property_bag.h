// Typed properties: what a form or a control offers to code that knows nothing else of it, such as
// painting by type name and a host that reads a screen through automation.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

#include "base/values.h"
#include "ui/property.h"

namespace velk {

/// A place and a size. All measures of a screen are twips (1/1440 inch).
struct Bounds {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Bounds&) const = default;
};

/// Every bag has Name, Visible, Left, Top, Width and Height.
class PropertyBag {
 public:
  virtual ~PropertyBag() = default;
  PropertyBag(const PropertyBag&) = delete;
  PropertyBag& operator=(const PropertyBag&) = delete;

  /// Error 438 where there is no such property; so in all that follow.
  const Value& get(Property property) const;
  /// The value is converted to the kind that the property holds (number, text, or flag: every
  /// number but 0 is true, and "True" and "False" are understood); errors 13, 6 and 94 as toInt32.
  /// Tells propertyChanged only when the value became another.
  void set(Property property, const Value& value);
  bool has(Property property) const { return values_.contains(property); }

  std::int32_t number(Property property) const;
  const std::string& text(Property property) const;
  bool flag(Property property) const { return number(property) != 0; }
  void setFlag(Property property, bool value) { set(property, value ? flagTrue : flagFalse); }

  const std::string& name() const { return text(Property::Name); }
  bool visible() const { return flag(Property::Visible); }
  void setVisible(bool visible) { setFlag(Property::Visible, visible); }
  Bounds bounds() const;

  /// True and false as automation writes them.
  static constexpr std::int32_t flagTrue = -1;
  static constexpr std::int32_t flagFalse = 0;

 protected:
  using Values = std::map<Property, Value>;

  PropertyBag(std::string_view name, const Bounds& bounds, bool visible);
  void declare(std::initializer_list<Values::value_type> values) { values_.insert(values); }
  /// As set, without telling propertyChanged. True when the value became another.
  bool setQuietly(Property property, const Value& value);
  virtual void propertyChanged(Property property) = 0;

 private:
  Values values_;
};

}  // namespace velk
