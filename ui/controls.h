// The controls that screens are made of.
//
// Each is a bag of properties under the platform's own names, plus the event handlers that a screen
// binds. "Colours" are BackColor and ForeColor, encoded as colors.h says.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ui/control.h"
#include "ui/file_dialog.h"

namespace velk {

/// Caption, colours.
class Label final : public Control {
 public:
  Label(Form& form, const Control* container, std::string_view name, const Bounds& bounds,
        std::string_view caption)
      : Control(form, "Label", container, name, bounds, {{Property::Caption, std::string(caption)}},
                systemColor::face) {}
};

/// Caption, colours. Controls name it as their container.
class Frame final : public Control {
 public:
  Frame(Form& form, std::string_view name, const Bounds& bounds, std::string_view caption)
      : Control(form, "Frame", nullptr, name, bounds, {{Property::Caption, std::string(caption)}},
                systemColor::face) {}
};

/// Text, colours.
class TextBox final : public Control {
 public:
  TextBox(Form& form, const Control* container, std::string_view name, const Bounds& bounds)
      : Control(form, "TextBox", container, name, bounds, {{Property::Text, ""}},
                systemColor::window) {}

  const std::string& value() const { return text(Property::Text); }
  void setValue(std::string_view value) { set(Property::Text, std::string(value)); }
  /// The user typed: the box now holds `value`. Dropped: it holds what it held, and the shell puts
  /// that back.
  EventResult userText(std::string_view value);
};

/// Caption; an "&" marks the mnemonic. Keeps its system colours.
class CommandButton final : public Control {
 public:
  CommandButton(Form& form, const Control* container, std::string_view name, const Bounds& bounds,
                std::string_view caption)
      : Control(form, "CommandButton", container, name, bounds,
                {{Property::Caption, std::string(caption)}}) {}

  std::function<void()> onClick;
  EventResult userClick() { return raise(onClick); }
};

/// Caption, Value, colours.
class CheckBox final : public Control {
 public:
  CheckBox(Form& form, const Control* container, std::string_view name, const Bounds& bounds,
           std::string_view caption)
      : Control(form, "CheckBox", container, name, bounds,
                {{Property::Caption, std::string(caption)}, {Property::CheckValue, 0}},
                systemColor::face) {}
};

/// Caption, Value, colours.
class OptionButton final : public Control {
 public:
  OptionButton(Form& form, const Control* container, std::string_view name, const Bounds& bounds,
               std::string_view caption)
      : Control(form, "OptionButton", container, name, bounds,
                {{Property::Caption, std::string(caption)}, {Property::CheckValue, flagFalse}},
                systemColor::face) {}
};

/// A drop-down list: ListIndex (from 0, -1 for none), Text, colours.
class ComboBox final : public Control {
 public:
  ComboBox(Form& form, const Control* container, std::string_view name, const Bounds& bounds,
           std::vector<std::string> items)
      : Control(form, "ComboBox", container, name, bounds,
                {{Property::ListIndex, -1}, {Property::Text, ""}}, systemColor::window),
        items_(std::move(items)) {}

  const std::vector<std::string>& items() const { return items_; }
  int index() const { return number(Property::ListIndex); }
  /// Raises no click. Error 380 for an index that does not exist.
  void setIndex(int index);

  std::function<void()> onClick;
  /// The user chose an item. Dropped: the choice is what it was, and the shell shows that again.
  EventResult userChoose(int index);

 private:
  std::vector<std::string> items_;
};

/// CalendarBackColor, CalendarForeColor, colours.
class DTPicker final : public Control {
 public:
  DTPicker(Form& form, const Control* container, std::string_view name, const Bounds& bounds)
      : Control(form, "DTPicker", container, name, bounds,
                {{Property::CalendarBackColor, systemColor::window.back},
                 {Property::CalendarForeColor, systemColor::window.fore}},
                systemColor::window) {}
};

/// Caption. A menu whose items name it as their container; an item has onClick.
class Menu final : public Control {
 public:
  Menu(Form& form, const Control* container, std::string_view name, std::string_view caption)
      : Control(form, "Menu", container, name, {}, {{Property::Caption, std::string(caption)}}) {}

  std::function<void()> onClick;
  /// Shows the menu and, when an item is chosen, runs its click handler; from a handler only.
  void popup();
};

/// The file dialog as a control: DialogTitle, Filter, FilterIndex, InitDir, FileName, CancelError.
class CommonDialog final : public Control {
 public:
  CommonDialog(Form& form, FileDialogs& dialogs, std::string_view name);

  /// Shows the dialog and puts the chosen path into FileName. When the user cancels, FileName stays
  /// as it was, and with CancelError set error 32755 is raised.
  void ShowOpen() { show(FileDialogKind::Open); }
  void ShowSave() { show(FileDialogKind::Save); }

 private:
  void show(FileDialogKind kind);

  FileDialogs& dialogs_;
};

}  // namespace velk
