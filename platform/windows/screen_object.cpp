#include "platform/windows/screen_object.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/text.h"
#include "platform/windows/com_errors.h"
#include "platform/windows/com_object.h"
#include "platform/windows/named_members.h"
#include "platform/windows/variants.h"
#include "ui/control.h"

namespace velk {

namespace {

// A form's members: its properties, the collection of its controls, each control.
// The numbers stay the same while the form lives, as callers keep them.
constexpr DISPID firstProperty = 1;  // 0 is DISPID_VALUE
// Far above the numbers of all properties.
constexpr DISPID controlsMember = 1000;
constexpr DISPID firstControl = 1001;

/// The position of the control of that name; the number of controls where there is none.
std::size_t positionOf(const Form& form, std::string_view name) {
  const auto found = std::ranges::find_if(form.controls(), [&](const Control* control) {
    return equalsIgnoringCase(control->name(), name);
  });
  return static_cast<std::size_t>(found - form.controls().begin());
}

/// The form, or one of its controls.
class BagObject final : public NamedMembers {
 public:
  BagObject(std::weak_ptr<Form> form, Control* control)
      : form_(std::move(form)), control_(control) {}

 private:
  DISPID idOf(std::string_view name) const override {
    const auto form = lock(form_);
    // First the properties: one of them hides a control of the same name.
    const std::optional<Property> property = propertyNamed(name);
    if (property && bag(*form).has(*property)) {
      return firstProperty + static_cast<DISPID>(*property);
    }
    if (control_ != nullptr) return DISPID_UNKNOWN;  // only forms have controls
    if (equalsIgnoringCase(name, "Controls")) return controlsMember;
    const std::size_t position = positionOf(*form, name);
    return position < form->controls().size() ? firstControl + static_cast<DISPID>(position)
                                              : DISPID_UNKNOWN;
  }
  Variant get(DISPID member, const std::optional<Value>& index) override;
  void put(DISPID member, const Value& value) override {
    const auto form = lock(form_);
    bag(*form).set(propertyOf(member), value);
  }

  static Property propertyOf(DISPID member) {
    if (member < firstProperty || member >= controlsMember) {
      throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
    }
    return static_cast<Property>(member - firstProperty);
  }
  PropertyBag& bag(Form& form) const {
    return control_ != nullptr ? static_cast<PropertyBag&>(*control_) : form;
  }

  std::weak_ptr<Form> form_;  // the host may keep the object for longer than the form lives
  Control* control_;
};

class ControlsObject final : public NamedMembers {
 public:
  explicit ControlsObject(std::weak_ptr<Form> form) : form_(std::move(form)) {}

  DISPID idOf(std::string_view name) const override {
    if (equalsIgnoringCase(name, "Item")) return DISPID_VALUE;
    return equalsIgnoringCase(name, "Count") ? countMember : DISPID_UNKNOWN;
  }
  Variant get(DISPID member, const std::optional<Value>& index) override {
    const auto form = lock(form_);
    if (member == countMember) {
      return Variant(Value(static_cast<std::int32_t>(form->controls().size())));
    }
    if (!index) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    return Variant(makeObject<BagObject>(form_, &item(*form, *index)).Get());
  }

 private:
  static constexpr DISPID countMember = 1;

  static Control& item(const Form& form, const Value& index) {
    // A negative index becomes a very large position, which is refused below, too.
    const auto* name = std::get_if<std::string>(&index);
    const auto position =
        name != nullptr ? positionOf(form, *name) : static_cast<std::size_t>(toInt32(index));
    if (position < form.controls().size()) return *form.controls()[position];
    throw RuntimeError(name != nullptr ? ErrorNumber::NoSuchPropertyOrMethod
                                       : ErrorNumber::SubscriptOutOfRange);
  }

  std::weak_ptr<Form> form_;
};

Variant BagObject::get(DISPID member, const std::optional<Value>& index) {
  const auto form = lock(form_);
  if (member < controlsMember) return Variant(bag(*form).get(propertyOf(member)));
  const auto controls = makeObject<ControlsObject>(form_);
  // Through the collection, so that only one place makes objects of controls.
  if (member >= firstControl) return controls->get(DISPID_VALUE, Value(member - firstControl));
  // "Controls(0)" may arrive as one call, with the index as an argument of "Controls".
  return index ? controls->get(DISPID_VALUE, index) : Variant(controls.Get());
}

}  // namespace

ComPtr<IDispatch> screenObject(Form& form) {
  return makeObject<BagObject>(form.weak_from_this(), nullptr);
}

}  // namespace velk
