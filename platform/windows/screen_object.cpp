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
#include "platform/windows/com_errors.h"
#include "platform/windows/com_object.h"
#include "platform/windows/named_members.h"
#include "platform/windows/ole_picture.h"
#include "platform/windows/variants.h"
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

/// A control's font, by the control's own properties.
class FontObject final : public NamedMembers {
 public:
  FontObject(std::weak_ptr<Form> form, Control& control)
      : form_(std::move(form)), control_(control) {}

 private:
  static constexpr std::pair<std::string_view, Property> members[] = {
      {"Name", Property::FontName}, {"Size", Property::FontSize}, {"Bold", Property::FontBold}};

  // The name is the default member.
  DISPID idOf(std::string_view name) const override {
    for (const auto& member : members) {
      if (equalsIgnoringCase(member.first, name)) return static_cast<DISPID>(&member - members);
    }
    return DISPID_UNKNOWN;
  }
  Variant get(DISPID member, const std::optional<Value>&) override {
    const auto form = lock(form_);
    return Variant(control_.get(propertyOf(member)));
  }
  void put(DISPID member, const Value& value) override {
    const auto form = lock(form_);
    control_.set(propertyOf(member), value);
  }
  static Property propertyOf(DISPID member) {
    if (member >= 0 && member < static_cast<DISPID>(std::size(members))) {
      return members[member].second;
    }
    throw RuntimeError(ErrorNumber::NoSuchPropertyOrMethod);
  }

  std::weak_ptr<Form> form_;
  Control& control_;
};

/// What For Each goes through: the controls as they were counted when it began.
class ControlsEnumerator final : public ComObject<IEnumVARIANT> {
 public:
  explicit ControlsEnumerator(std::weak_ptr<Form> form, std::size_t next = 0)
      : form_(std::move(form)), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) noexcept override {
    if (items == nullptr) return E_POINTER;
    ULONG given = 0;
    const std::size_t before = next_;
    const HRESULT result = guarded(
        [&] {
          const auto form = lock(form_);
          for (; given < count && next_ < form->controls().size(); ++given, ++next_) {
            const auto control = makeObject<BagObject>(form_, form->controls()[next_]);
            items[given] = Variant(static_cast<IDispatch*>(control.Get())).release();
          }
        },
        toHresult);
    if (FAILED(result)) {  // all or nothing: the caller frees what he was told of only
      std::for_each_n(items, given, [](VARIANT& item) { VariantClear(&item); });
      given = 0;
      next_ = before;
    }
    if (fetched != nullptr) *fetched = given;
    if (FAILED(result)) return result;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
    const auto form = form_.lock();
    const std::size_t left = form == nullptr ? 0 : form->controls().size() - next_;
    next_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() noexcept override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override {
    if (copy == nullptr) return E_POINTER;
    *copy = nullptr;
    return guarded([&] { *copy = makeObject<ControlsEnumerator>(form_, next_).Detach(); },
                   toHresult);
  }

 private:
  std::weak_ptr<Form> form_;
  std::size_t next_;
};

class ControlsObject final : public NamedMembers {
 public:
  explicit ControlsObject(std::weak_ptr<Form> form) : form_(std::move(form)) {}

  DISPID idOf(std::string_view name) const override {
    if (equalsIgnoringCase(name, "Item")) return DISPID_VALUE;
    if (equalsIgnoringCase(name, "_NewEnum")) return DISPID_NEWENUM;
    return equalsIgnoringCase(name, "Count") ? countMember : DISPID_UNKNOWN;
  }
  Variant get(DISPID member, const std::optional<Value>& index) override {
    const auto form = lock(form_);
    if (member == countMember) {
      return Variant(Value(static_cast<std::int32_t>(form->controls().size())));
    }
    if (member == DISPID_NEWENUM) {
      return Variant(static_cast<IUnknown*>(makeObject<ControlsEnumerator>(form_).Get()));
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
  if (const auto special = otherHere(*form, member)) return other(*form, control_, *special);
  // Only forms have controls.
  if (control_ != nullptr || member < controlsMember)
    return Variant(bag(*form).get(propertyOf(member)));
  const auto controls = makeObject<ControlsObject>(form_);
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
      return Variant(makeObject<FontObject>(form.weak_from_this(), *control).Get());
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
