#include "platform/windows/controls_object.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/text.h"
#include "ui/control.h"

namespace velk {

std::size_t positionOf(const Form& form, std::string_view name) {
  const auto found = std::ranges::find_if(form.controls(), [&](const Control* control) {
    return equalsIgnoringCase(control->name(), name);
  });
  return static_cast<std::size_t>(found - form.controls().begin());
}

namespace {

class ControlsObject final : public NamedMembers {
 public:
  ControlsObject(std::weak_ptr<Form> form, MakeControlObject make)
      : form_(std::move(form)), make_(make) {}

  DISPID idOf(std::string_view name) const override {
    if (equalsIgnoringCase(name, "Item")) return DISPID_VALUE;
    if (equalsIgnoringCase(name, "_NewEnum")) return DISPID_NEWENUM;
    return equalsIgnoringCase(name, "Count") ? countMember : DISPID_UNKNOWN;
  }
  bool takesIndex(DISPID member) const override { return member == DISPID_VALUE; }
  Variant get(DISPID member, const std::optional<Value>& index) override {
    const auto form = lock(form_);
    if (member == countMember) {
      return Variant(Value(static_cast<std::int32_t>(form->controls().size())));
    }
    if (member == DISPID_NEWENUM) {
      return Variant(static_cast<IUnknown*>(controlsEnumerator(form_, make_).Get()));
    }
    if (!index) throw RuntimeError(ErrorNumber::InvalidProcedureCall);
    return Variant(make_(form_, item(*form, *index)).Get());
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
  MakeControlObject make_;
};

}  // namespace

ComPtr<NamedMembers> controlsObject(std::weak_ptr<Form> form, MakeControlObject make) {
  return makeObject<ControlsObject>(std::move(form), make);
}

}  // namespace velk
