#include "platform/windows/screen_object.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/windows/controls_object.h"
#include "platform/windows/font_object.h"
#include "platform/windows/named_members.h"
#include "platform/windows/ole_picture.h"
#include "platform/windows/property_variant.h"
#include "ui/control.h"
#include "ui/tab_order.h"

namespace velk {

namespace {

// A form's members: its properties, what else platform forms have, the collection of its controls,
// each control.
// The numbers stay the same while the form lives, as callers keep them.
constexpr DISPID firstProperty = 1;  // 0 is DISPID_VALUE
// Far above the numbers of all properties.
constexpr DISPID firstOther = 900;
constexpr DISPID controlsMember = 1000;
constexpr DISPID firstControl = 1001;

/// Members that are no property of the model, in the order of their numbers.
enum class Other { Move, SetFocus, Show, Hide, Icon, TabIndex, Font };
constexpr Other lastMethod = Other::Hide;
struct OtherMember {
  std::string_view name;
  bool ofForm;
  bool ofControl;
};
constexpr OtherMember otherMembers[] = {
    {"Move", true, true},  {"SetFocus", true, true},  {"Show", true, false}, {"Hide", true, false},
    {"Icon", true, false}, {"TabIndex", false, true}, {"Font", false, true}};

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
    for (const OtherMember& other : otherMembers) {
      if (!equalsIgnoringCase(other.name, name)) continue;
      const DISPID member = firstOther + static_cast<DISPID>(&other - otherMembers);
      if (otherHere(*form, member)) return member;
    }
    if (control_ != nullptr) return DISPID_UNKNOWN;  // only forms have controls
    if (equalsIgnoringCase(name, "Controls")) return controlsMember;
    const std::size_t position = positionOf(*form, name);
    return position < form->controls().size() ? firstControl + static_cast<DISPID>(position)
                                              : DISPID_UNKNOWN;
  }
  bool takesIndex(DISPID member) const override { return member == controlsMember; }
  Variant get(DISPID member, const std::optional<Value>& index) override;
  void put(DISPID member, const Value& value) override {
    const auto form = lock(form_);
    if (otherHere(*form, member) == Other::TabIndex) {
      const std::int32_t index = toInt32(value);
      if (index < 0) throw RuntimeError(ErrorNumber::InvalidPropertyValue);
      return setTabIndex(*form, *control_, static_cast<std::size_t>(index));
    }
    bag(*form).set(propertyOf(member), value);
  }
  void putObject(DISPID member, IUnknown* object) override {
    const auto form = lock(form_);
    if (otherHere(*form, member) != Other::Icon)
      throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
    form->setIcon(object == nullptr ? nullptr : std::make_shared<OlePicture>(object));
  }
  bool isMethod(DISPID member) const override {
    const auto other = otherHere(*lock(form_), member);
    return other && *other <= lastMethod;
  }
  void call(DISPID member, std::span<const Value> arguments) override;
  /// The other member of that number if this object has it: callers may use a number of another.
  std::optional<Other> otherHere(const Form& form, DISPID member) const {
    constexpr DISPID behind = firstOther + static_cast<DISPID>(std::size(otherMembers));
    if (member < firstOther || member >= behind) return std::nullopt;
    const DISPID index = member - firstOther;
    const OtherMember& other = otherMembers[index];
    const bool isHere = control_ != nullptr ? other.ofControl && isPlaced(form) : other.ofForm;
    return isHere ? std::optional(static_cast<Other>(index)) : std::nullopt;
  }
  /// False for a menu or a dialog.
  bool isPlaced(const Form& form) const {
    const auto order = tabOrder(form);
    return std::ranges::find(order, control_) != order.end();
  }
  static Variant other(Form& form, Control* control, Other member);
  void move(Form& form, std::span<const Value> arguments);

  static Property propertyOf(DISPID member) {
    if (member < firstProperty || member >= firstOther) {
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

ComPtr<IDispatch> controlObject(const std::weak_ptr<Form>& form, Control& control) {
  return makeObject<BagObject>(form, &control);
}

Variant BagObject::get(DISPID member, const std::optional<Value>& index) {
  const auto form = lock(form_);
  if (const auto special = otherHere(*form, member)) return other(*form, control_, *special);
  // Only forms have controls.
  if (control_ != nullptr || member < controlsMember)
    return propertyVariant(bag(*form), propertyOf(member));
  const auto controls = controlsObject(form_, controlObject);
  // Through the collection, so that only one place makes objects of controls.
  if (member >= firstControl) return controls->get(DISPID_VALUE, Value(member - firstControl));
  // "Controls(0)" may arrive as one call, with the index as an argument of "Controls".
  return index ? controls->get(DISPID_VALUE, index) : Variant(controls.Get());
}

Variant BagObject::other(Form& form, Control* control, Other member) {
  switch (member) {
    case Other::Icon: {
      const auto* icon = dynamic_cast<const OlePicture*>(form.icon().get());
      IUnknown* picture = icon == nullptr ? nullptr : icon->picture().Get();
      return Variant(queryInterface<IDispatch>(picture).Get());
    }
    case Other::TabIndex: {
      const auto order = tabOrder(form);
      const auto place = std::ranges::find(order, control) - order.begin();
      return Variant(Value(static_cast<std::int32_t>(place)));
    }
    case Other::Font:
      return Variant(fontObject(form.weak_from_this(), *control).Get());
    default:
      throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  }
}

void BagObject::call(DISPID member, std::span<const Value> arguments) {
  const auto form = lock(form_);
  const auto method = otherHere(*form, member);
  if (!method) throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  if (method == Other::Move) return move(*form, arguments);
  if (!arguments.empty()) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  if (method != Other::SetFocus) return form->setVisible(method == Other::Show);
  if (control_ == nullptr) return form->setFocus();
  if (!control_->reachable()) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  control_->setFocus();
}

// All are converted before the first one is set.
void BagObject::move(Form& form, std::span<const Value> arguments) {
  constexpr Property places[] = {Property::Left, Property::Top, Property::Width, Property::Height};
  if (arguments.empty() || arguments.size() > std::size(places)) {
    throw RuntimeError(ErrorNumber::InvalidProcedureCall);
  }
  std::vector<std::pair<Property, std::int32_t>> given;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const bool isLeftOut = i > 0 && std::holds_alternative<Null>(arguments[i]);
    if (!isLeftOut) given.emplace_back(places[i], toInt32(arguments[i]));
  }
  for (const auto& [property, value] : given) bag(form).set(property, value);
}

}  // namespace

ComPtr<IDispatch> screenObject(Form& form) {
  return makeObject<BagObject>(form.weak_from_this(), nullptr);
}

}  // namespace velk
