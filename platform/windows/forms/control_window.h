// The window of one control: shows what the model holds and reports what the user does.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/windows/forms/fonts.h"
#include "platform/windows/scale.h"
#include "ui/control.h"

namespace velk {

/// Where a control's window is made and what it is made with.
struct ControlPlace {
  HWND parent;
  Scale scale;
  Fonts& fonts;
  /// Keeps the form's window, with those of all controls, while a handler runs that may close it.
  std::function<std::shared_ptr<void>()> keep;
};

class ControlWindow {
 public:
  virtual ~ControlWindow() = default;
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;

  HWND handle() const { return handle_; }
  /// Screen readers take the name of a box from the text before it, shown or not. The screens show
  /// none there, so that this makes one.
  void nameBy(std::string_view caption);
  /// Below all other windows of its parent: the Tab key comes here after them.
  void putLast() const;
  Control& control() const { return control_; }

  /// A property has changed in the model.
  virtual void propertyChanged(Property property);
  /// The notification code of a WM_COMMAND.
  virtual void command(UINT /*code*/) {}
  /// A WM_NOTIFY; the answer to it.
  virtual LRESULT notify(NMHDR& /*header*/) { return 0; }
  /// A key went down with the focus here, `shift` as Form::userKeyDown has it. True: it was used.
  virtual bool keyDown(WPARAM /*key*/, std::int16_t /*shift*/) { return false; }
  /// Where a menu appears that the control asks for by the keyboard, on the display.
  virtual std::optional<POINT> menuPlace() const { return std::nullopt; }
  /// Sets the colours of `dc` and answers the brush of the background; null: the system's.
  HBRUSH color(HDC dc) const;
  /// Shows what was put off while code changed the model.
  virtual void flush() {}
  virtual bool needsFlush() const { return false; }

 protected:
  ControlWindow(Control& control, const ControlPlace& place, const wchar_t* windowClass,
                DWORD style, DWORD extendedStyle = 0);

  const Scale& scale() const { return scale_; }
  /// Puts the window where the model has the control.
  virtual void place() const;
  Fonts& fonts() const { return fonts_; }
  HFONT font() const;
  void showText(Property property) const;

 private:
  void enable() const;

  Control& control_;
  Scale scale_;
  Fonts& fonts_;
  HWND handle_;
  HWND label_ = nullptr;
};

/// The number that Windows paints for a colour of the model.
COLORREF toColorRef(std::int32_t color);

}  // namespace velk
