// Properties as automation carries them.
#pragma once

#include "platform/windows/variants.h"
#include "ui/property_bag.h"

namespace velk {

/// A flag is a Boolean. Error 438 where there is no such property.
inline Variant propertyVariant(const PropertyBag& bag, Property property) {
  return isFlag(property) ? Variant(bag.flag(property)) : Variant(bag.get(property));
}

}  // namespace velk
