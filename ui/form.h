// A screen as data: the form, and how events enter.
//
// A screen class derives from Form, owns its controls as members and handles their events; it never
// knows whether a window shows it. A shell (windows, or none) shows the form, hears through the one
// FormObserver what the code changed, and reports through the user... members what the user did.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "ui/form_shell.h"
#include "ui/property_bag.h"

namespace velk {

/// What became of an event.
enum class EventResult {
  Handled,
  Dropped,  ///< its handler was not run
  Failed,   ///< its handler let an error out, and the user was told
};

enum class WindowState : std::int32_t { Normal = 0, Minimised = 1, Maximised = 2 };

/// A form's events all enter through `dispatch`. Besides the properties that every bag has:
/// Caption, BackColor, Enabled, Tag, WindowState, hWnd (the handle of its window, 0 without one).
class Form : public PropertyBag, public std::enable_shared_from_this<Form> {
 public:
  Form(FormShell& shell, std::string_view name, std::string_view caption, const Bounds& design);

  std::span<Control* const> controls() const { return controls_; }
  /// The order of the Tab key that code has set; empty: none. See tab_order.h.
  const std::vector<Control*>& ownTabOrder() const { return tabOrder_; }
  void setTabOrder(std::vector<Control*> order);
  WindowState windowState() const {
    return static_cast<WindowState>(number(Property::WindowState));
  }
  void setBounds(const Bounds& bounds);
  /// Null: the shell's default icon. The picture lives as long as the form uses it. Error 481 for a
  /// picture that is no icon.
  void setIcon(std::shared_ptr<const Picture> icon);
  const std::shared_ptr<const Picture>& icon() const { return icon_; }
  /// Brings the form to the front, with the keyboard.
  void setFocus() { propertyChanged(Property::Focus); }
  void setObserver(FormObserver* observer) { observer_ = observer; }
  FormShell& shell() const { return shell_; }

  /// Shows the form, modeless.
  void show();
  /// The screen, or the user, closes the form: at once, or, from inside a handler or its set-up,
  /// when that has returned.
  void unload();
  bool isOpen() const { return open_; }

  /// Runs a handler for an event. Drops the event while another handler of this form runs (message
  /// boxes pump messages: a second click must not start a second run), before the form accepts
  /// events and after it was closed. The form lives at least until the handler has returned. A
  /// RuntimeError, or any other exception of the standard library, that the handler lets out goes
  /// to `eventFailed`.
  EventResult dispatch(const std::function<void()>& handler);

  /// While a handler's long work lasts (see work.h): `done` records of `total` are done; 0: nobody
  /// knows how many there are. Costs next to nothing, so that it can be told record by record.
  void workProgressed(std::size_t done, std::size_t total = 0) {
    if (observer_ != nullptr) observer_->workProgressed(done, total);
  }
  void workEnded() noexcept {
    if (observer_ != nullptr) observer_->workEnded();
  }

  void userKeyDown(std::int16_t keyCode, std::int16_t shift);
  /// The user, or the platform, changed the window's state, place or size. The model follows at
  /// once, also while a handler runs or the form is set up; then the event comes when that has
  /// returned. So it does when code sets size or state. `outer` are the bounds of the whole window,
  /// and when it is minimised those that it had before.
  void userResize(WindowState state, const Bounds& outer);
  /// The window was shown or hidden by others. The model follows, without an event.
  void userVisible(bool visible) { setQuietly(Property::Visible, visible ? flagTrue : flagFalse); }

 protected:
  /// Puts the form's controls, all of them, into another order than that of their declaration.
  void arrange(std::vector<Control*> controls) { controls_ = std::move(controls); }

  /// From now on events reach their handlers. A close that was asked for before happens now.
  void acceptEvents();

  virtual void Form_KeyDown(std::int16_t /*KeyCode*/, std::int16_t /*Shift*/) {}
  virtual void Form_Resize() {}
  /// Tells the user of an error that a handler let out. Must not throw.
  virtual void eventFailed(const RuntimeError& error) noexcept = 0;

  void propertyChanged(Property property) override;

 private:
  friend class Control;
  EventResult runGuarded(const std::function<void()>& handler);
  void endRun();
  void closeNow();
  void resized();

  FormShell& shell_;
  FormObserver* observer_ = nullptr;
  std::vector<Control*> controls_;
  std::vector<Control*> tabOrder_;  // empty until code sets it
  std::shared_ptr<const Picture> icon_;
  bool accepting_ = false;
  bool running_ = false;
  bool open_ = false;
  bool closeRequested_ = false;
  bool resizePending_ = false;
  bool resizing_ = false;  ///< what Form_Resize sets is no change of its own
};

}  // namespace velk
