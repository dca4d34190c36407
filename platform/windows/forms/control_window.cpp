#include "platform/windows/forms/control_window.h"

#include "base/errors.h"
#include "platform/windows/module_path.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

DWORD styleOf(const Control& control, DWORD style) {
  return style | WS_CHILD | WS_CLIPSIBLINGS | (control.visible() ? WS_VISIBLE : 0U) |
         (control.enabled() ? 0U : WS_DISABLED);
}

}  // namespace

ControlWindow::ControlWindow(Control& control, const ControlPlace& place,
                             const wchar_t* windowClass, DWORD style, DWORD extendedStyle)
    : control_(control), scale_(place.scale), fonts_(place.fonts) {
  const Bounds at = scale_.pixels(control_.bounds());
  const std::wstring caption =
      control.has(Property::Caption) ? toWide(control.text(Property::Caption)) : std::wstring();
  handle_ =
      CreateWindowExW(extendedStyle, windowClass, caption.c_str(), styleOf(control, style), at.left,
                      at.top, at.width, at.height, place.parent, nullptr, thisModule(), nullptr);
  if (handle_ == nullptr) throw RuntimeError(ErrorNumber::OutOfMemory);
  // A new window has the old system font.
  SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(font()), FALSE);
}

void ControlWindow::nameBy(std::string_view caption) {
  if (label_ == nullptr) {
    label_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | SS_NOPREFIX, 0, 0, 0, 0,
                             GetParent(handle_), nullptr, thisModule(), nullptr);
  }
  SetWindowTextW(label_, toWide(caption).c_str());
}

void ControlWindow::putLast() const {
  for (const HWND window : {label_, handle_}) {
    if (window == nullptr) continue;
    SetWindowPos(window, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
}

HFONT ControlWindow::font() const {
  return fonts_.of(control_);
}

void ControlWindow::propertyChanged(Property property) {
  switch (property) {
    case Property::Enabled:
      return enable();
    case Property::Visible:
      // SHOWNA, because a control that appears must not activate anything.
      ShowWindow(handle_, control_.visible() ? SW_SHOWNA : SW_HIDE);
      return;
    case Property::Left:
    case Property::Top:
    case Property::Width:
    case Property::Height:
      return place();
    case Property::FontName:
    case Property::FontSize:
    case Property::FontBold:
      SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(font()), TRUE);
      InvalidateRect(handle_, nullptr, TRUE);  // not every class paints anew by itself
      return;
    case Property::Caption:
      return showText(property);
    case Property::Focus:
      SetFocus(handle_);
      return;
    default:
      // Colours: the window asks for them when it paints.
      InvalidateRect(handle_, nullptr, TRUE);
  }
}

// A window that is disabled while it has the focus would take the keyboard with it.
void ControlWindow::enable() const {
  if (!control_.enabled() && GetFocus() == handle_) {
    const HWND root = GetAncestor(handle_, GA_ROOT);
    SetFocus(GetNextDlgTabItem(root, handle_, FALSE));
  }
  EnableWindow(handle_, control_.enabled() ? TRUE : FALSE);
}

void ControlWindow::place() const {
  const Bounds at = scale_.pixels(control_.bounds());
  SetWindowPos(handle_, nullptr, at.left, at.top, at.width, at.height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void ControlWindow::showText(Property property) const {
  SetWindowTextW(handle_, toWide(control_.text(property)).c_str());
}

// The system's own brush of this kind takes its colour from `dc`, so that there is none to keep.
HBRUSH ControlWindow::color(HDC dc) const {
  if (!control_.has(Property::BackColor)) return nullptr;
  const COLORREF back = toColorRef(control_.number(Property::BackColor));
  SetBkColor(dc, back);
  SetDCBrushColor(dc, back);
  SetTextColor(dc, toColorRef(control_.number(Property::ForeColor)));
  return static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
}

COLORREF toColorRef(std::int32_t color) {
  const auto number = static_cast<std::uint32_t>(color);
  // With this bit the rest is the number of a system colour (COLOR_...).
  constexpr std::uint32_t systemColor = 0x80000000;
  return (number & systemColor) != 0 ? GetSysColor(static_cast<int>(number & 0xFF))
                                     : number & 0x00FFFFFF;
}

}  // namespace velk
