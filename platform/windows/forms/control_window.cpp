#include "platform/windows/forms/control_window.h"

#include "base/errors.h"
#include "base/text.h"
#include "platform/windows/forms/frame_class.h"
#include "platform/windows/forms/list_window.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

DWORD styleOf(const Control& control, DWORD style) {
  return style | WS_CHILD | WS_CLIPSIBLINGS | (control.visible() ? WS_VISIBLE : 0U) |
         (control.enabled() ? 0U : WS_DISABLED);
}

bool isOneOf(std::string_view property, std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) {
    if (equalsIgnoringCase(property, name)) return true;
  }
  return false;
}

}  // namespace

ControlWindow::ControlWindow(Control& control, const ControlPlace& place,
                             const wchar_t* windowClass, DWORD style, DWORD extendedStyle)
    : control_(control), scale_(place.scale) {
  const RECT at = scale_.pixels({control.number("Left"), control.number("Top"),
                                 control.number("Width"), control.number("Height")});
  const bool captioned = control.has("Caption");
  const std::wstring caption = captioned ? toWide(control.text("Caption")) : std::wstring();
  handle_ = CreateWindowExW(extendedStyle, windowClass, caption.c_str(), styleOf(control, style),
                            at.left, at.top, at.right - at.left, at.bottom - at.top, place.parent,
                            nullptr, thisModule(), nullptr);
  if (handle_ == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  const std::string_view font =
      control.has("FontName") ? control.text("FontName") : Fonts::standard;
  SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(place.fonts.get(font)), FALSE);
}

ControlWindow::~ControlWindow() {
  if (brush_ != nullptr) DeleteObject(brush_);
}

COLORREF ControlWindow::toColorRef(std::int32_t colour) {
  const auto number = static_cast<std::uint32_t>(colour);
  constexpr std::uint32_t systemColour = 0x80000000;
  return (number & systemColour) != 0 ? GetSysColor(static_cast<int>(number & 0xFF))
                                      : number & 0x00FFFFFF;
}

void ControlWindow::propertyChanged(std::string_view property) {
  if (isOneOf(property, {"Enabled"})) {
    enable();
  } else if (isOneOf(property, {"Visible"})) {
    ShowWindow(handle_, control_.visible() ? SW_SHOWNA : SW_HIDE);
  } else if (isOneOf(property, {"Left", "Top", "Width", "Height"})) {
    place();
  } else if (isOneOf(property, {"Caption"})) {
    showText("Caption");
  } else {
    InvalidateRect(handle_, nullptr, TRUE);
  }
}

// A window that is disabled while it has the focus would take the keyboard with it.
void ControlWindow::enable() {
  if (!control_.enabled() && GetFocus() == handle_) {
    const HWND root = GetAncestor(handle_, GA_ROOT);
    SetFocus(GetNextDlgTabItem(root, handle_, FALSE));
  }
  EnableWindow(handle_, control_.enabled() ? TRUE : FALSE);
}

void ControlWindow::place() {
  const RECT at = scale_.pixels({control_.number("Left"), control_.number("Top"),
                                 control_.number("Width"), control_.number("Height")});
  SetWindowPos(handle_, nullptr, at.left, at.top, at.right - at.left, at.bottom - at.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void ControlWindow::showText(std::string_view property) {
  const Echo echo(*this);
  SetWindowTextW(handle_, toWide(control_.text(property)).c_str());
}

HBRUSH ControlWindow::colour(HDC dc) {
  if (!control_.has("BackColor")) return nullptr;
  const COLORREF back = toColorRef(control_.number("BackColor"));
  SetBkColor(dc, back);
  SetTextColor(dc, toColorRef(control_.number("ForeColor")));
  if (brushColour_ != back) {
    if (brush_ != nullptr) DeleteObject(brush_);
    brush_ = CreateSolidBrush(back);
    brushColour_ = back;
  }
  return brush_;
}

namespace {

class LabelWindow final : public ControlWindow {
 public:
  LabelWindow(Control& control, const ControlPlace& place)
      : ControlWindow(control, place, L"STATIC", SS_LEFT | SS_NOPREFIX) {}
};

class FrameWindow final : public ControlWindow {
 public:
  FrameWindow(Control& control, const ControlPlace& place)
      : ControlWindow(control, place, frameClassName(), WS_CLIPCHILDREN, WS_EX_CONTROLPARENT) {
    SetWindowLongPtrW(handle(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
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
    SendMessageW(handle(), EM_SETLIMITTEXT, 0, 0);  // as long as it gets
    showText("Text");
  }
  void propertyChanged(std::string_view property) override {
    if (!equalsIgnoringCase(property, "Text")) return ControlWindow::propertyChanged(property);
    showText("Text");
    SendMessageW(handle(), EM_SETSEL, box_.value().size(), -1);  // the end of a path says most
  }
  void command(UINT code) override {
    if (code != EN_CHANGE || isEcho()) return;
    if (box_.userText(typed()) == EventResult::Dropped) showText("Text");
  }

 private:
  std::string typed() const {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(handle())), L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(handle(), text.data(), static_cast<int>(text.size()) + 1)));
    return fromWide(text);
  }

  TextBox& box_;
};

class ComboWindow final : public ControlWindow {
 public:
  ComboWindow(ComboBox& box, const ControlPlace& place)
      : ControlWindow(box, place, L"COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP),
        box_(box) {
    for (const std::string& item : box.items()) {
      SendMessageW(handle(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(toWide(item).c_str()));
    }
    showChoice();
  }
  void propertyChanged(std::string_view property) override {
    if (equalsIgnoringCase(property, "ListIndex")) return showChoice();
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
  void showChoice() { SendMessageW(handle(), CB_SETCURSEL, static_cast<WPARAM>(box_.index()), 0); }

  ComboBox& box_;
};

}  // namespace

std::unique_ptr<ControlWindow> makeControlWindow(Control& control, const ControlPlace& place) {
  if (auto* list = dynamic_cast<ListView*>(&control)) {
    return std::make_unique<ListWindow>(*list, place);
  }
  if (auto* button = dynamic_cast<CommandButton*>(&control)) {
    return std::make_unique<ButtonWindow>(*button, place);
  }
  if (auto* box = dynamic_cast<TextBox*>(&control)) {
    return std::make_unique<TextBoxWindow>(*box, place);
  }
  if (auto* combo = dynamic_cast<ComboBox*>(&control)) {
    return std::make_unique<ComboWindow>(*combo, place);
  }
  if (dynamic_cast<Label*>(&control) != nullptr) {
    return std::make_unique<LabelWindow>(control, place);
  }
  if (dynamic_cast<Frame*>(&control) != nullptr) {
    return std::make_unique<FrameWindow>(control, place);
  }
  return nullptr;
}

}  // namespace velk
