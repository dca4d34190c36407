#include "platform/windows/forms/window_factory.h"

#include "platform/windows/wide_text.h"

namespace velk {

namespace {

// NOPREFIX, because an ampersand in a label is a character to show.
class LabelWindow final : public ControlWindow {
 public:
  LabelWindow(Label& label, const ControlPlace& place)
      : ControlWindow(label, place, L"STATIC", SS_LEFT | SS_NOPREFIX) {}
};

class ButtonWindow final : public ControlWindow {
 public:
  ButtonWindow(CommandButton& button, const ControlPlace& place)
      : ControlWindow(button, place, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP), button_(button) {}
  void command(UINT code) override {
    if (code == BN_CLICKED) button_.userClick();
  }

 private:
  CommandButton& button_;
};

class TextBoxWindow final : public ControlWindow {
 public:
  TextBoxWindow(TextBox& box, const ControlPlace& place)
      : ControlWindow(box, place, L"EDIT", ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE),
        box_(box) {
    SendMessageW(handle(), EM_SETLIMITTEXT, 0, 0);  // as long as can be: paths are
    showValue();
  }
  void propertyChanged(Property property) override {
    if (property != Property::Text) return ControlWindow::propertyChanged(property);
    showValue();
    SendMessageW(handle(), EM_SETSEL, box_.value().size(), -1);  // the end of a path says most
  }
  void command(UINT code) override {
    if (code != EN_CHANGE || showing_) return;
    // A dropped event has not reached the model: the window goes back to what that has.
    if (box_.userText(typed()) == EventResult::Dropped) showValue();
  }

 private:
  // The window reports its new text as if the user had typed it.
  void showValue() {
    showing_ = true;
    showText(Property::Text);
    showing_ = false;
  }
  std::string typed() const {
    // The length may be an estimate that is too long; GetWindowText answers the true one.
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(handle())), L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(handle(), text.data(), static_cast<int>(text.size()) + 1)));
    return fromWide(text);
  }

  TextBox& box_;
  bool showing_ = false;
};

class ComboWindow final : public ControlWindow {
 public:
  ComboWindow(ComboBox& box, const ControlPlace& place)
      : ControlWindow(box, place, L"COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP),
        box_(box) {
    for (const std::string& item : box.items()) {
      SendMessageW(handle(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(toWide(item).c_str()));
    }
    ComboWindow::place();
    showChoice();
  }
  void propertyChanged(Property property) override {
    if (property == Property::ListIndex) return showChoice();
    ControlWindow::propertyChanged(property);
  }
  void command(UINT code) override {
    if (code != CBN_SELCHANGE) return;
    const auto chosen = static_cast<int>(SendMessageW(handle(), CB_GETCURSEL, 0, 0));
    // The arrow keys can choose what is chosen already.
    if (chosen == box_.index()) return;
    if (box_.userChoose(chosen) == EventResult::Dropped) showChoice();
  }

 private:
  // The height of this kind of window is that of the box with its list; the box alone is as high
  // as its font asks for.
  void place() const override {
    const Bounds at = scale().pixels(box_.bounds());
    const auto item = static_cast<int>(SendMessageW(handle(), CB_GETITEMHEIGHT, 0, 0));
    const int list =
        item * static_cast<int>(box_.items().size()) + 2 * GetSystemMetrics(SM_CYBORDER);
    SetWindowPos(handle(), nullptr, at.left, at.top, at.width, at.height + list,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  }
  // CB_SETCURSEL sends no notification, so this needs no guard as the text box does.
  void showChoice() const {
    SendMessageW(handle(), CB_SETCURSEL, static_cast<WPARAM>(box_.index()), 0);
  }

  ComboBox& box_;
};

template <class Model, class Window>
std::unique_ptr<ControlWindow> make(Control& control, const ControlPlace& place) {
  auto* model = dynamic_cast<Model*>(&control);
  return model == nullptr ? nullptr : std::make_unique<Window>(*model, place);
}

}  // namespace

std::unique_ptr<ControlWindow> makeControlWindow(Control& control, const ControlPlace& place) {
  if (auto* frame = dynamic_cast<Frame*>(&control)) return makeFrameWindow(*frame, place);
  if (auto* list = dynamic_cast<ListView*>(&control)) return makeListWindow(*list, place);
  for (const auto maker : {make<Label, LabelWindow>, make<CommandButton, ButtonWindow>,
                           make<TextBox, TextBoxWindow>, make<ComboBox, ComboWindow>}) {
    if (auto window = maker(control, place)) return window;
  }
  return nullptr;
}

}  // namespace velk
