#include "platform/windows/font_object.h"

#include <iterator>
#include <utility>

#include "base/text.h"
#include "platform/windows/named_members.h"
#include "platform/windows/property_variant.h"
#include "ui/control.h"

namespace velk {

namespace {

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
    return propertyVariant(control_, propertyOf(member));
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

}  // namespace

ComPtr<IDispatch> fontObject(std::weak_ptr<Form> form, Control& control) {
  return makeObject<FontObject>(std::move(form), control);
}

}  // namespace velk
