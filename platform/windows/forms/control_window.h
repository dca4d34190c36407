// The window of one control: shows what the model holds and reports what the user does.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <optional>
#include <string_view>

#include "platform/windows/forms/fonts.h"
#include "platform/windows/forms/scale.h"
#include "ui/controls.h"

namespace velk {

/// Where a control's window is made and what it is made with.
struct ControlPlace {
  HWND parent;
  Scale scale;
  Fonts& fonts;
};

class ControlWindow {
 public:
  virtual ~ControlWindow();
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;

  HWND handle() const { return handle_; }
  Control& control() const { return control_; }
  /// True for the control's window and for windows inside it, such as a list's header.
  bool holds(HWND window) const { return window == handle_ || IsChild(handle_, window) != FALSE; }

  /// A property has changed in the model.
  virtual void propertyChanged(std::string_view property);
  /// The notification code of a WM_COMMAND.
  virtual void command(UINT /*code*/) {}
  /// A WM_NOTIFY; the answer to it.
  virtual LRESULT notify(NMHDR& /*header*/) { return 0; }
  /// Sets the colours of `dc` and answers the brush of the background; null: the system's.
  virtual HBRUSH colour(HDC dc);
  /// Shows what was put off while code changed the model.
  virtual void flush() {}
  virtual bool needsFlush() const { return false; }

  /// The number that Windows paints for a colour of the model.
  static COLORREF toColorRef(std::int32_t colour);

 protected:
  ControlWindow(Control& control, const ControlPlace& place, const wchar_t* windowClass,
                DWORD style, DWORD extendedStyle = 0);

  const Scale& scale() const { return scale_; }
  void showText(std::string_view property);
  /// Set while the window is changed from here, so that its notifications are not the user's.
  struct Echo {
    explicit Echo(ControlWindow& w) : window(w) { ++window.echoes_; }
    ~Echo() { --window.echoes_; }
    Echo(const Echo&) = delete;
    Echo& operator=(const Echo&) = delete;
    ControlWindow& window;
  };
  bool isEcho() const { return echoes_ > 0; }

 private:
  void enable();
  void place();

  Control& control_;
  Scale scale_;
  HWND handle_ = nullptr;
  HBRUSH brush_ = nullptr;
  std::optional<COLORREF> brushColour_;
  int echoes_ = 0;
};

/// Null for a control without a window, such as a menu.
std::unique_ptr<ControlWindow> makeControlWindow(Control& control, const ControlPlace& place);

}  // namespace velk
