#include "platform/windows/forms/header_window.h"

#include <uxtheme.h>
#include <vssym32.h>

#include <utility>

#include "platform/windows/floating_point.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

// In twips: the title stands above the texts of the cells.
constexpr int roomBefore = 75;
constexpr int roomBehind = 30;

LRESULT bySystem(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto system = reinterpret_cast<WNDPROC>(GetClassLongPtrW(window, GCLP_WNDPROC));
  return CallWindowProcW(system, window, message, wParam, lParam);
}

}  // namespace

// Not by SetWindowSubclass: older common controls export it by its number only, and a DLL that
// imports it by name would not load there.
HeaderWindow::HeaderWindow(HWND header, Scale scale, HeaderLook look)
    : handle_(header), scale_(scale), look_(std::move(look)) {
  SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrW(handle_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

// The window may have gone before.
HeaderWindow::~HeaderWindow() {
  if (handle_ != nullptr) SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
}

LRESULT CALLBACK HeaderWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* self = reinterpret_cast<HeaderWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return bySystem(window, message, wParam, lParam);
  const MaskedFloatingPoint masked;
  // A click on a title runs a handler, which may close the form.
  const auto alive = self->look_.keep();
  try {
    if (message == WM_ERASEBKGND) return TRUE;  // all of it is painted
    if (message == WM_PAINT) return self->paint(), 0;
    if (message == WM_NCDESTROY) {
      self->handle_ = nullptr;
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      return bySystem(window, message, wParam, lParam);
    }
    self->seen(message, lParam);
  } catch (...) {
    // No exception crosses Windows; the next painting tries again.
  }
  if (IsWindow(window) == FALSE) return 0;
  return bySystem(window, message, wParam, lParam);
}

void HeaderWindow::seen(UINT message, LPARAM lParam) {
  HDHITTESTINFO under{};
  under.pt = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
  switch (message) {
    case WM_LBUTTONDOWN:
      SendMessageW(handle_, HDM_HITTEST, 0, reinterpret_cast<LPARAM>(&under));
      pressed_ = (under.flags & HHT_ONHEADER) != 0 ? under.iItem : -1;
      paintAnew();
      break;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      pressed_ = -1;
      paintAnew();
      break;
    case WM_RBUTTONUP:
      look_.rightClicked(under.pt);
      break;
    default:
      break;
  }
}

RECT HeaderWindow::placeOf(int column) const {
  RECT place{};
  SendMessageW(handle_, HDM_GETITEMRECT, static_cast<WPARAM>(column),
               reinterpret_cast<LPARAM>(&place));
  return place;
}

void HeaderWindow::paint() const {
  RECT behind;
  GetClientRect(handle_, &behind);
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(handle_, &paint);
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(handle_, WM_GETFONT, 0, 0));
  const HGDIOBJ before = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);
  try {  // a painting that was begun has to be ended
    const auto columns = static_cast<int>(SendMessageW(handle_, HDM_GETITEMCOUNT, 0, 0));
    for (int column = 0; column < columns; ++column) {
      const RECT place = placeOf(column);
      if (place.right > place.left) paintColumn(dc, column, place);
      behind.left = place.right;
    }
  } catch (...) {
    behind.left = 0;
  }
  if (behind.right > behind.left) paintFrame(dc, behind, false);
  SelectObject(dc, before);
  EndPaint(handle_, &paint);
}

void HeaderWindow::paintColumn(HDC dc, int column, const RECT& place) const {
  paintFrame(dc, place, column == pressed_);
  RECT inner = place;
  InflateRect(&inner, -1, -1);
  const bool isChosen = look_.chosen() == column;
  if (isChosen) FillRect(dc, &inner, GetSysColorBrush(COLOR_HIGHLIGHT));
  SetTextColor(dc, GetSysColor(isChosen ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT));
  if (look_.current() == column) DrawFocusRect(dc, &inner);
  RECT room = place;
  room.left += scale_.pixels(roomBefore);
  room.right -= scale_.pixels(roomBehind);
  const std::wstring title = toWide(look_.title(column));
  // NOCLIP: the last letter's pixels may go beyond the text's width.
  DrawTextW(dc, title.c_str(), static_cast<int>(title.size()), &room,
            DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX | DT_NOCLIP);
}

// In the look of the list around it: themed only if the common controls are.
void HeaderWindow::paintFrame(HDC dc, RECT place, bool isPressed) const {
  if (const HTHEME theme = GetWindowTheme(handle_)) {
    const int state = isPressed ? HIS_PRESSED : HIS_NORMAL;
    DrawThemeBackground(theme, dc, HP_HEADERITEM, state, &place, nullptr);
    return;
  }
  FillRect(dc, &place, GetSysColorBrush(COLOR_BTNFACE));
  DrawEdge(dc, &place, isPressed ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
}

}  // namespace velk
