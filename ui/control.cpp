#include "ui/control.h"

namespace velk {

Control::Control(Form& form, std::string_view typeName, const Control* container,
                 std::string_view name, const Bounds& bounds,
                 std::initializer_list<Values::value_type> properties,
                 std::optional<ColorPair> colors)
    : PropertyBag(name, bounds, true), form_(form), typeName_(typeName), container_(container) {
  declare({{Property::Enabled, flagTrue}});
  declare(properties);  // what is declared first stays
  declare({{Property::Tag, ""},
           {Property::FontName, "Arial"},
           {Property::FontSize, 9.0},
           {Property::FontBold, flagFalse}});
  if (colors) declare({{Property::BackColor, colors->back}, {Property::ForeColor, colors->fore}});
  // The form lists its controls in the order of their declaration until it arranges them.
  form.controls_.push_back(this);
}

EventResult Control::raise(const std::function<void()>& handler) const {
  return handler && reachable() ? form_.dispatch(handler) : EventResult::Dropped;
}

// A window in a disabled or hidden frame gets no input either; here the rule holds without windows.
bool Control::reachable() const {
  for (const Control* c = this; c != nullptr; c = c->container_) {
    if (!c->enabled() || !c->visible()) return false;
  }
  return true;
}

void Control::propertyChanged(Property property) {
  if (form_.observer_ != nullptr) form_.observer_->controlChanged(*this, property);
}

}  // namespace velk
