// Changing a window step by step, with one painting at the end.
#pragma once

#include <windows.h>

namespace velk {

/// Keeps a window that is shown from painting while this lives; then all of it, frame and child
/// windows included, is due once. What was due before comes with that.
class PaintPause {
 public:
  // To let a window paint again would show it if it is hidden.
  explicit PaintPause(HWND window)
      : window_((GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0 ? window : nullptr) {
    letPaint(FALSE);
  }
  ~PaintPause() {
    letPaint(TRUE);
    constexpr UINT everything = RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN;
    if (window_ != nullptr) RedrawWindow(window_, nullptr, nullptr, everything);
  }
  PaintPause(const PaintPause&) = delete;
  PaintPause& operator=(const PaintPause&) = delete;

 private:
  // Windows' list passes the message on, Wine's does not, and paints its scroll bars meanwhile.
  void letPaint(BOOL painting) const {
    if (window_ == nullptr) return;
    SendMessageW(window_, WM_SETREDRAW, static_cast<WPARAM>(painting), 0);
    DefWindowProcW(window_, WM_SETREDRAW, static_cast<WPARAM>(painting), 0);
  }

  HWND window_;
};

}  // namespace velk
