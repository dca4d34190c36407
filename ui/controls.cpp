#include "ui/controls.h"

#include <utility>

#include "base/errors.h"

namespace velk {

Label::Label(Form& form, const Control* container, std::string_view name, Bounds bounds,
             std::string_view caption)
    : Control(form, container, name, bounds) {
  declare({{"Caption", std::string(caption)},
           {"BackColor", systemColor::buttonFace},
           {"ForeColor", systemColor::buttonText}});
}

Frame::Frame(Form& form, std::string_view name, Bounds bounds, std::string_view caption)
    : Control(form, nullptr, name, bounds) {
  declare({{"Caption", std::string(caption)},
           {"BackColor", systemColor::buttonFace},
           {"ForeColor", systemColor::buttonText},
           {"FontName", std::string("Arial")}});
}

TextBox::TextBox(Form& form, const Control* container, std::string_view name, Bounds bounds)
    : Control(form, container, name, bounds) {
  declare({{"Text", std::string()},
           {"BackColor", systemColor::windowBackground},
           {"ForeColor", systemColor::windowText}});
}

EventResult TextBox::userText(std::string_view value) {
  return form().dispatch(this, [&] { userSet("Text", std::string(value)); });
}

CommandButton::CommandButton(Form& form, const Control* container, std::string_view name,
                             Bounds bounds, std::string_view caption)
    : Control(form, container, name, bounds) {
  declare({{"Caption", std::string(caption)}});
}

EventResult CommandButton::userClick() {
  return onClick ? form().dispatch(this, onClick) : EventResult::Dropped;
}

CheckBox::CheckBox(Form& form, const Control* container, std::string_view name, Bounds bounds,
                   std::string_view caption)
    : Control(form, container, name, bounds) {
  declare({{"Caption", std::string(caption)},
           {"Value", 0},
           {"BackColor", systemColor::buttonFace},
           {"ForeColor", systemColor::buttonText}});
}

OptionButton::OptionButton(Form& form, const Control* container, std::string_view name,
                           Bounds bounds, std::string_view caption)
    : Control(form, container, name, bounds) {
  declare({{"Caption", std::string(caption)},
           {"Value", flagFalse},
           {"BackColor", systemColor::buttonFace},
           {"ForeColor", systemColor::buttonText}});
}

ComboBox::ComboBox(Form& form, const Control* container, std::string_view name, Bounds bounds,
                   std::vector<std::string> items)
    : Control(form, container, name, bounds), items_(std::move(items)) {
  declare({{"ListIndex", -1},
           {"Text", std::string()},
           {"BackColor", systemColor::windowBackground},
           {"ForeColor", systemColor::windowText}});
}

void ComboBox::setIndex(int index) {
  if (index < -1 || index >= static_cast<int>(items_.size())) {
    throw RuntimeError(ErrorNumber::InvalidPropertyValue);
  }
  set("ListIndex", index);
  set("Text", index < 0 ? std::string() : items_[static_cast<std::size_t>(index)]);
}

EventResult ComboBox::userChoose(int index) {
  return form().dispatch(this, [&] {
    if (index < 0 || index >= static_cast<int>(items_.size())) return;
    userSet("ListIndex", index);
    userSet("Text", items_[static_cast<std::size_t>(index)]);
    if (onClick) onClick();
  });
}

DTPicker::DTPicker(Form& form, const Control* container, std::string_view name, Bounds bounds)
    : Control(form, container, name, bounds) {
  declare({{"CalendarBackColor", systemColor::windowBackground},
           {"CalendarForeColor", systemColor::windowText},
           {"BackColor", systemColor::windowBackground},
           {"ForeColor", systemColor::windowText}});
}

Menu::Menu(Form& form, const Control* container, std::string_view name, std::string_view caption)
    : Control(form, container, name, {}) {
  declare({{"Caption", std::string(caption)}});
}

CommonDialog::CommonDialog(Form& form, Desktop& desktop, std::string_view name)
    : Control(form, nullptr, name, {}), desktop_(desktop) {
  declare({{"DialogTitle", std::string()},
           {"Filter", std::string()},
           {"FilterIndex", 1},
           {"InitDir", std::string()},
           {"FileName", std::string()},
           {"CancelError", flagFalse}});
}

FileDialog CommonDialog::settings() const {
  return {.title = text("DialogTitle"),
          .filter = text("Filter"),
          .filterIndex = number("FilterIndex"),
          .initialFolder = text("InitDir"),
          .fileName = text("FileName")};
}

void CommonDialog::accept(const std::optional<std::string>& chosen) {
  if (chosen) {
    set("FileName", *chosen);
  } else if (flag("CancelError")) {
    throw RuntimeError(ErrorNumber::CancelSelected);
  }
}

void CommonDialog::ShowOpen() {
  accept(desktop_.chooseFileToOpen(settings()));
}

void CommonDialog::ShowSave() {
  accept(desktop_.chooseFileToSave(settings()));
}

}  // namespace velk
