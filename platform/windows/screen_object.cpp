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

/// Of a name that the bag has not: nothing.
std::optional<Property> propertyOf(const PropertyBag& bag, std::string_view name) {
  const std::optional<Property> property = propertyNamed(name);
  return property && bag.has(*property) ? property : std::nullopt;
}

Control* controlNamed(const Form& form, std::string_view name) {
  const auto found = std::ranges::find_if(form.controls(), [&](const Control* control) {
    return equalsIgnoringCase(control->name(), name);
  });
  return found == form.controls().end() ? nullptr : *found;
}

/// The form, or one of its controls.
class BagObject final : public NamedMembers {
 public:
  BagObject(std::weak_ptr<Form> form, Control* control)
      : form_(std::move(form)), control_(control) {}

 private:
  bool has(std::string_view name) const override {
    const auto form = locked();
    if (propertyOf(bag(*form), name)) return true;
    return control_ == nullptr && (controlNamed(*form, name) != nullptr || isControls(name));
  }
  Variant get(std::string_view name, const std::optional<Value>& index) override;
  void put(std::string_view name, const Value& value) override;

  static bool isControls(std::string_view name) { return equalsIgnoringCase(name, "Controls"); }
  std::shared_ptr<Form> locked() const { return lock(form_); }
  PropertyBag& bag(Form& form) const {
    return control_ != nullptr ? static_cast<PropertyBag&>(*control_) : form;
  }

  std::weak_ptr<Form> form_;
  Control* control_;
};

class ControlsObject final : public NamedMembers {
 public:
  explicit ControlsObject(std::weak_ptr<Form> form) : form_(std::move(form)) {}

  bool has(std::string_view name) const override {
    return equalsIgnoringCase(name, defaultMember) || equalsIgnoringCase(name, "Count");
  }
  Variant get(std::string_view name, const std::optional<Value>& index) override {
    const auto form = lock(form_);
    if (!equalsIgnoringCase(name, defaultMember)) {
      return Variant(Value(static_cast<std::int32_t>(form->controls().size())));
    }
    return Variant(makeObject<BagObject>(form_, &item(*form, index)).get());
  }

 private:
  static Control& item(const Form& form, const std::optional<Value>& index) {
    if (!index) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    if (const auto* name = std::get_if<std::string>(&*index)) {
      if (Control* control = controlNamed(form, *name)) return *control;
      throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
    }
    const auto position = static_cast<std::size_t>(toInt32(*index));
    if (position >= form.controls().size()) throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
    return *form.controls()[position];
  }

  std::weak_ptr<Form> form_;
};

Variant BagObject::get(std::string_view name, const std::optional<Value>& index) {
  const auto form = locked();
  if (const auto property = propertyOf(bag(*form), name)) {
    return Variant(bag(*form).get(*property));
  }
  if (!isControls(name)) {
    return Variant(makeObject<BagObject>(form_, controlNamed(*form, name)).get());
  }
  const auto controls = makeObject<ControlsObject>(form_);
  if (!index) return Variant(controls.get());
  return controls->get(NamedMembers::defaultMember, index);
}

void BagObject::put(std::string_view name, const Value& value) {
  const auto form = locked();
  const auto property = propertyOf(bag(*form), name);
  if (!property) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  bag(*form).set(*property, value);
}

}  // namespace

ComPointer<IDispatch> screenObject(Form& form) {
  return ComPointer<IDispatch>::adopt(new BagObject(form.weak_from_this(), nullptr));
}

}  // namespace velk
