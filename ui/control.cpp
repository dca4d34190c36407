#include "ui/control.h"

namespace velk {

Control::Control(Form& form, std::string_view typeName, const Control* container,
                 std::string_view name, const Bounds& bounds,
                 std::initializer_list<Values::value_type> properties)
    : PropertyBag(name, bounds, true), form_(form), typeName_(typeName), container_(container) {
  declare({{Property::Enabled, flagTrue}});
  declare(properties);
  form.controls_.push_back(this);
}

EventResult Control::raise(const std::function<void()>& handler) const {
  return handler && reachable() ? form_.dispatch(handler) : EventResult::Dropped;
}

bool Control::reachable() const {
  for (const Control* c = this; c != nullptr; c = c->container_) {
    if (!c->enabled() || !c->visible()) return false;
  }
  return true;
}

void Control::propertyChanged(Property property) {
  form_.observer().controlChanged(*this, property);
}

}  // namespace velk
