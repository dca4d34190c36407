// The window of one form: its controls' windows inside it, and the form's observer.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "platform/windows/forms/control_window.h"
#include "platform/windows/forms/progress_display.h"
#include "ui/controls.h"

namespace velk {

class FormWindow final : public FormObserver, public std::enable_shared_from_this<FormWindow> {
 public:
  /// Makes the window, hidden. `keep` is held as long as this lives: what the form needs.
  FormWindow(std::shared_ptr<Form> form, std::shared_ptr<void> keep);
  ~FormWindow() override;
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  Form& form() const { return *form_; }
  HWND handle() const { return handle_; }

  void show();
  /// Takes the window down. The form is told nothing.
  void destroy() noexcept;
  Menu* popup(const Menu& menu) const;

  /// A message that the host's loop took for this window or one inside it: the form sees keys
  /// first, then Tab, mnemonics and the like work. True when nothing is left to do.
  bool preTranslate(const MSG& message);

  /// The form's window that a window is or belongs to; null for windows of others.
  static std::shared_ptr<FormWindow> of(HWND window);

  void formChanged(Property property) override;
  void controlChanged(Control& control, Property property) override;
  void workProgressed(std::size_t done, std::size_t total) override;
  void workEnded() noexcept override;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
  void makeWindow();
  void makeControls();
  void nameBoxes() const;
  void applyTabOrder() const;
  ControlWindow* windowOf(const Control& control) const;
  ControlWindow* holding(HWND window) const;
  void takeFocusBack() const;
  void command(WPARAM wParam, HWND control);
  LRESULT notify(NMHDR& header) const;
  LRESULT color(UINT message, WPARAM wParam, LPARAM lParam) const;
  void erase(HDC dc) const;
  void showSystemColors() const;
  LRESULT positionChanged(WPARAM wParam, LPARAM lParam);
  void moved(const WINDOWPOS& position);
  WindowState state() const;
  void changeLater();
  void flush();
  void applyBounds();
  void applyVisible(int command);
  void applyIcon() const;
  LRESULT defaultHandling(UINT message, WPARAM wParam, LPARAM lParam) const {
    return DefWindowProcW(handle_, message, wParam, lParam);
  }

  std::shared_ptr<void> keep_;  // first, so that it goes last
  std::shared_ptr<Form> form_;
  Scale scale_;
  Fonts fonts_;
  HWND handle_ = nullptr;
  std::vector<std::unique_ptr<ControlWindow>> controls_;
  HWND focus_ = nullptr;  ///< the control to come back to when the window is activated again
  ProgressDisplay progress_;
  bool boundsChanged_ = false;
  bool flushPosted_ = false;
  bool applying_ = false;
};

}  // namespace velk
