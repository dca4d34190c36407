#include "ui/controls.h"

#include <utility>

#include "base/errors.h"
#include "ui/colors.h"

namespace velk {

Label::Label(Form& form, const Control* container, std::string_view name, const Bounds& bounds,
             std::string_view caption)
    : Control(form, "Label", container, name, bounds, {{Property::Caption, std::string(caption)}}) {
  declareColors(systemColor::face);
}

Frame::Frame(Form& form, std::string_view name, const Bounds& bounds, std::string_view caption)
    : Control(form, "Frame", nullptr, name, bounds,
              {{Property::Caption, std::string(caption)}, {Property::FontName, "Arial"}}) {
  declareColors(systemColor::face);
}

TextBox::TextBox(Form& form, const Control* container, std::string_view name, const Bounds& bounds)
    : Control(form, "TextBox", container, name, bounds, {{Property::Text, ""}}) {
  declareColors(systemColor::window);
}

EventResult TextBox::userText(std::string_view value) {
  return raise([&] { setQuietly(Property::Text, std::string(value)); });
}

CommandButton::CommandButton(Form& form, const Control* container, std::string_view name,
                             const Bounds& bounds, std::string_view caption)
    : Control(form, "CommandButton", container, name, bounds,
              {{Property::Caption, std::string(caption)}}) {}

CheckBox::CheckBox(Form& form, const Control* container, std::string_view name,
                   const Bounds& bounds, std::string_view caption)
    : Control(form, "CheckBox", container, name, bounds,
              {{Property::Caption, std::string(caption)}, {Property::CheckValue, 0}}) {
  declareColors(systemColor::face);
}

OptionButton::OptionButton(Form& form, const Control* container, std::string_view name,
                           const Bounds& bounds, std::string_view caption)
    : Control(form, "OptionButton", container, name, bounds,
              {{Property::Caption, std::string(caption)}, {Property::CheckValue, flagFalse}}) {
  declareColors(systemColor::face);
}

ComboBox::ComboBox(Form& form, const Control* container, std::string_view name,
                   const Bounds& bounds, std::vector<std::string> items)
    : Control(form, "ComboBox", container, name, bounds,
              {{Property::ListIndex, -1}, {Property::Text, ""}}),
      items_(std::move(items)) {
  declareColors(systemColor::window);
}

void ComboBox::setIndex(int index) {
  if (index < -1 || index >= static_cast<int>(items_.size())) {
    throw RuntimeError(ErrorNumber::InvalidPropertyValue);
  }
  set(Property::ListIndex, index);
  set(Property::Text, index < 0 ? "" : items_[static_cast<std::size_t>(index)]);
}

EventResult ComboBox::userChoose(int index) {
  return raise([&] {
    if (index < 0 || index >= static_cast<int>(items_.size())) return;
    setQuietly(Property::ListIndex, index);
    setQuietly(Property::Text, items_[static_cast<std::size_t>(index)]);
    if (onClick) onClick();
  });
}

DTPicker::DTPicker(Form& form, const Control* container, std::string_view name,
                   const Bounds& bounds)
    : Control(form, "DTPicker", container, name, bounds,
              {{Property::CalendarBackColor, systemColor::window.back},
               {Property::CalendarForeColor, systemColor::window.fore}}) {
  declareColors(systemColor::window);
}

Menu::Menu(Form& form, const Control* container, std::string_view name, std::string_view caption)
    : Control(form, "Menu", container, name, {}, {{Property::Caption, std::string(caption)}}) {}

void Menu::popup() {
  const Menu* chosen = form().shell().popup(*this);
  // The menu itself is commonly hidden, so that no menu bar shows it: only the item counts.
  if (chosen == nullptr || !chosen->enabled() || !chosen->visible()) return;
  if (chosen->onClick) chosen->onClick();
}

CommonDialog::CommonDialog(Form& form, FileDialogs& dialogs, std::string_view name)
    : Control(form, "CommonDialog", nullptr, name, {},
              {{Property::DialogTitle, ""},
               {Property::Filter, ""},
               {Property::FilterIndex, 1},
               {Property::InitDir, ""},
               {Property::FileName, ""},
               {Property::CancelError, flagFalse}}),
      dialogs_(dialogs) {}

FileDialog CommonDialog::settings() const {
  return {.title = text(Property::DialogTitle),
          .filter = text(Property::Filter),
          .filterIndex = number(Property::FilterIndex),
          .initialFolder = text(Property::InitDir),
          .fileName = text(Property::FileName)};
}

void CommonDialog::accept(const std::optional<std::string>& chosen) {
  if (chosen) {
    set(Property::FileName, *chosen);
  } else if (flag(Property::CancelError)) {
    throw RuntimeError(ErrorNumber::CancelSelected);
  }
}

}  // namespace velk
