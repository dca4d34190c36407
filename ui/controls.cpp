#include "ui/controls.h"

#include "base/errors.h"

namespace velk {

EventResult TextBox::userText(std::string_view value) {
  // Quietly, because the window that reports the text shows it already.
  return raise([&] { setQuietly(Property::Text, std::string(value)); });
}

void ComboBox::setIndex(int index) {
  if (index < -1 || index >= static_cast<int>(items_.size())) {
    throw RuntimeError(ErrorNumber::InvalidPropertyValue);
  }
  // No click is raised: only a user's choice is an event.
  set(Property::ListIndex, index);
  set(Property::Text, index < 0 ? "" : items_[static_cast<std::size_t>(index)]);
}

EventResult ComboBox::userChoose(int index) {
  return raise([&] {
    // A shell may report that nothing is chosen, which no user can do.
    if (index < 0 || index >= static_cast<int>(items_.size())) return;
    setQuietly(Property::ListIndex, index);
    setQuietly(Property::Text, items_[static_cast<std::size_t>(index)]);
    if (onClick) onClick();
  });
}

void Menu::popup() {
  const Menu* chosen = form().shell().popup(*this);
  // The menu itself is commonly hidden, so that no menu bar shows it: only the item counts.
  if (chosen == nullptr || !chosen->enabled() || !chosen->visible()) return;
  // Not through dispatch: the handler that opened the menu still runs, so that it would be dropped.
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

void CommonDialog::show(FileDialogKind kind) {
  const auto chosen = dialogs_.askForFile({.kind = kind,
                                           .title = text(Property::DialogTitle),
                                           .filter = text(Property::Filter),
                                           .filterIndex = number(Property::FilterIndex),
                                           .initialFolder = text(Property::InitDir),
                                           .fileName = text(Property::FileName)});
  // After a cancel the file name stays as it was.
  if (chosen) {
    set(Property::FileName, *chosen);
  } else if (flag(Property::CancelError)) {
    throw RuntimeError(ErrorNumber::CancelSelected);
  }
}

}  // namespace velk
