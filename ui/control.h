// What all controls have in common.
#pragma once

#include <functional>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "ui/colors.h"
#include "ui/form.h"

namespace velk {

/// Besides the properties that every bag has: Enabled, Tag (the host's own, no one else reads it),
/// FontName (Arial unless said otherwise), FontSize (in points) and FontBold. Controls are members
/// of their form and register with it in the order of declaration.
class Control : public PropertyBag {
 public:
  std::string_view typeName() const { return typeName_; }
  Form& form() const { return form_; }
  /// The frame that contains the control, or null for the form itself.
  const Control* container() const { return container_; }

  bool enabled() const { return flag(Property::Enabled); }
  void setEnabled(bool enabled) { setFlag(Property::Enabled, enabled); }
  void setFocus() { propertyChanged(Property::Focus); }

 protected:
  /// `typeName` is a literal: painting finds controls by it. `colors`, if given, are BackColor and
  /// ForeColor.
  Control(Form& form, std::string_view typeName, const Control* container, std::string_view name,
          const Bounds& bounds, std::initializer_list<Values::value_type> properties,
          std::optional<ColorPair> colors = std::nullopt);

  /// Runs a handler for an event of this control, as Form::dispatch does. Drops the event without a
  /// handler, and when the control or what contains it is disabled or hidden.
  EventResult raise(const std::function<void()>& handler) const;
  void propertyChanged(Property property) override;

 private:
  bool reachable() const;

  Form& form_;
  std::string_view typeName_;
  const Control* container_;
};

}  // namespace velk
