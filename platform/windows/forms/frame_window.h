// The window of a frame: a titled border that really contains its controls, so that its background
// can have a colour of its own.
#pragma once

#include "platform/windows/forms/control_window.h"
#include "ui/controls.h"

namespace velk {

/// Hands its controls' notifications to its parent.
class FrameWindow final : public ControlWindow {
 public:
  FrameWindow(Frame& frame, const ControlPlace& place);

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept;
  void erase(HDC dc) const;
  void paint() const;
};

}  // namespace velk
