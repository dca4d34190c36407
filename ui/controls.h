// The controls that screens are made of.
//
// Each is a bag of properties under the platform's own names, plus the event handlers that a screen
// binds. Colours are numbers as the platform encodes them: 0x00BBGGRR, or a system colour with the
// high bit set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"
#include "ui/form.h"

namespace velk {

namespace systemColor {
constexpr std::int32_t encode(std::uint32_t colour) {
  return static_cast<std::int32_t>(colour);
}
inline constexpr std::int32_t windowBackground = encode(0x80000005);
inline constexpr std::int32_t windowText = encode(0x80000008);
inline constexpr std::int32_t buttonFace = encode(0x8000000F);
inline constexpr std::int32_t buttonText = encode(0x80000012);
}  // namespace systemColor

/// Caption, BackColor, ForeColor.
class Label final : public Control {
 public:
  Label(Form& form, const Control* container, std::string_view name, Bounds bounds,
        std::string_view caption);
  std::string_view typeName() const override { return "Label"; }
};

/// Caption, BackColor, ForeColor, FontName. Controls name it as their container.
class Frame final : public Control {
 public:
  Frame(Form& form, std::string_view name, Bounds bounds, std::string_view caption);
  std::string_view typeName() const override { return "Frame"; }
};

/// Text, BackColor, ForeColor.
class TextBox final : public Control {
 public:
  TextBox(Form& form, const Control* container, std::string_view name, Bounds bounds);
  std::string_view typeName() const override { return "TextBox"; }

  const std::string& value() const { return text("Text"); }
  void setValue(std::string_view value) { set("Text", std::string(value)); }
  /// The user typed: the box now holds `value`. Dropped: it holds what it held, and the shell puts
  /// that back.
  EventResult userText(std::string_view value);
};

/// Caption; an "&" marks the mnemonic. Keeps its system colours.
class CommandButton final : public Control {
 public:
  CommandButton(Form& form, const Control* container, std::string_view name, Bounds bounds,
                std::string_view caption);
  std::string_view typeName() const override { return "CommandButton"; }

  std::function<void()> onClick;
  EventResult userClick();
};

/// Caption, Value, BackColor, ForeColor.
class CheckBox final : public Control {
 public:
  CheckBox(Form& form, const Control* container, std::string_view name, Bounds bounds,
           std::string_view caption);
  std::string_view typeName() const override { return "CheckBox"; }
};

/// Caption, Value, BackColor, ForeColor.
class OptionButton final : public Control {
 public:
  OptionButton(Form& form, const Control* container, std::string_view name, Bounds bounds,
               std::string_view caption);
  std::string_view typeName() const override { return "OptionButton"; }
};

/// A drop-down list: ListIndex (from 0, -1 for none), Text, BackColor, ForeColor.
class ComboBox final : public Control {
 public:
  ComboBox(Form& form, const Control* container, std::string_view name, Bounds bounds,
           std::vector<std::string> items);
  std::string_view typeName() const override { return "ComboBox"; }

  const std::vector<std::string>& items() const { return items_; }
  int index() const { return number("ListIndex"); }
  /// Raises no click. Error 380 for an index that does not exist.
  void setIndex(int index);

  std::function<void()> onClick;
  /// The user chose an item. Dropped: the choice is what it was, and the shell shows that again.
  EventResult userChoose(int index);

 private:
  std::vector<std::string> items_;
};

/// CalendarBackColor, CalendarForeColor, BackColor, ForeColor.
class DTPicker final : public Control {
 public:
  DTPicker(Form& form, const Control* container, std::string_view name, Bounds bounds);
  std::string_view typeName() const override { return "DTPicker"; }
};

/// Caption. A menu whose items name it as their container; an item has onClick.
class Menu final : public Control {
 public:
  Menu(Form& form, const Control* container, std::string_view name, std::string_view caption);
  std::string_view typeName() const override { return "Menu"; }

  std::function<void()> onClick;
};

/// The file dialog as a control: DialogTitle, Filter, FilterIndex, InitDir, FileName, CancelError.
class CommonDialog final : public Control {
 public:
  CommonDialog(Form& form, Desktop& desktop, std::string_view name);
  std::string_view typeName() const override { return "CommonDialog"; }

  /// Shows the dialog and puts the chosen path into FileName. When the user cancels, FileName stays
  /// as it was, and with CancelError set error 32755 is raised.
  void ShowOpen();
  void ShowSave();

 private:
  void accept(const std::optional<std::string>& chosen);
  FileDialog settings() const;

  Desktop& desktop_;
};

}  // namespace velk
