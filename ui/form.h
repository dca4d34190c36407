// A screen as data: the form, what its controls have in common, and how events enter.
//
// A screen class derives from Form, owns its controls as members and handles their events; it never
// knows whether a window shows it. A shell (windows, or none) shows the form, hears through the one
// FormObserver what the code changed, and reports through the user... members what the user did.
// All measures are twips (1/1440 inch).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "ui/property_bag.h"

namespace velk {

class Control;
class Form;
class ListView;
class Menu;

struct Bounds {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Bounds&) const = default;
};

/// What became of an event.
enum class EventResult {
  Handled,
  Dropped,  ///< its handler was not run
  Failed,   ///< its handler let an error out, and the user was told
};

/// An icon handed over by the host; only shells know what is in it.
class Picture {
 public:
  virtual ~Picture() = default;
  /// Error 481 when it is no icon.
  virtual void requireIcon() const {}
};

enum class WindowState : std::int32_t { Normal = 0, Minimised = 1, Maximised = 2 };

/// Hears what code changed; the shell's own user... calls are not echoed.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void formChanged(Form&, std::string_view /*property*/) {}
  virtual void controlChanged(Control&, std::string_view /*property*/) {}
  /// Columns were added, removed, renamed or resized.
  virtual void columnsChanged(ListView&) {}
  /// Rows `first` to `last` (from 1) have other texts, or the number of rows changed (first 0).
  virtual void rowsChanged(ListView&, std::size_t /*first*/, std::size_t /*last*/) {}
  virtual void focusMoved(Control&) {}
};

/// Where forms appear.
class FormShell {
 public:
  virtual ~FormShell() = default;
  /// Shows the form without waiting, and keeps it alive until `closed`.
  virtual void show(std::shared_ptr<Form> form) = 0;
  /// The form is unloaded: the shell takes its window down and lets go of it.
  virtual void closed(Form& form) noexcept = 0;
  /// Shows a popup menu at the pointer and waits; the item chosen, or null.
  virtual Menu* popup(Form& form, Menu& menu) = 0;
};

/// A form's events all enter through `dispatch`. Properties: Name, Caption, BackColor, Left, Top,
/// Width, Height, WindowState, Visible, hWnd (the handle of its window, 0 without one).
class Form : public PropertyBag, public std::enable_shared_from_this<Form> {
 public:
  Form(FormShell& shell, std::string_view name, std::string_view caption, Bounds design);

  const std::string& name() const { return text("Name"); }
  std::span<Control* const> controls() const { return controls_; }
  WindowState windowState() const { return static_cast<WindowState>(number("WindowState")); }
  void setBounds(Bounds bounds);
  Bounds bounds() const;
  /// Null: the shell's default icon. The picture lives as long as the form uses it. Error 481 for a
  /// picture that is no icon.
  void setIcon(std::shared_ptr<const Picture> icon);
  const std::shared_ptr<const Picture>& icon() const { return icon_; }
  void setObserver(FormObserver* observer) { observer_ = observer; }
  FormObserver& observer() const;

  /// Shows the form, modeless.
  void show();
  /// Closes the form: at once, or, from inside a handler or its set-up, when that has returned.
  void unload();
  bool isOpen() const { return open_; }
  /// True while one of the form's handlers runs.
  bool isRunning() const { return running_; }

  /// Runs a handler for an event of `source` (null: the form itself). Drops the event when the
  /// source or what contains it is disabled or hidden, while another handler of this form runs
  /// (message boxes pump messages: a second click must not start a second run), before the form
  /// accepts events and after it was closed. The form lives at least until the handler has
  /// returned. A RuntimeError, or any other exception of the standard library, that the handler
  /// lets out goes to `eventFailed`.
  EventResult dispatch(const Control* source, const std::function<void()>& handler);

  void userKeyDown(std::int16_t keyCode, std::int16_t shift);
  /// The user, or the platform, changed the window's state, place or size. The model follows at
  /// once, also while a handler runs; then the event comes when that has returned. `outer` are the
  /// bounds of the whole window, and when it is minimised those that it had before.
  void userResize(WindowState state, Bounds outer);
  /// The user closed the window.
  void userClose();

  /// Shows a popup menu and, when an item is chosen, runs its click handler; from a handler only.
  void popup(Menu& menu);
  void focus(Control& control) const { observer().focusMoved(control); }

 protected:
  /// Puts the form's controls, all of them, into another order than that of their declaration.
  void arrange(std::vector<Control*> controls) { controls_ = std::move(controls); }

  /// From now on events reach their handlers. A close that came before is carried out.
  void acceptEvents();

  virtual void Form_KeyDown(std::int16_t /*KeyCode*/, std::int16_t /*Shift*/) {}
  virtual void Form_Resize() {}
  /// Tells the user of an error that a handler let out. Must not throw.
  virtual void eventFailed(const RuntimeError& error) noexcept = 0;

  void propertyChanged(std::string_view name) override;

 private:
  friend class Control;
  EventResult runGuarded(const std::function<void()>& handler);
  void endRun();
  void closeNow();

  FormShell& shell_;
  FormObserver* observer_ = nullptr;
  std::vector<Control*> controls_;
  std::shared_ptr<const Picture> icon_;
  bool accepting_ = false;
  bool running_ = false;
  bool open_ = false;
  bool closeRequested_ = false;
  bool resizePending_ = false;
};

/// What all controls share. Properties of every control: Name, Enabled, Visible, Left, Top, Width,
/// Height. Controls are members of their form and register with it in the order of declaration,
/// which is also the tab order unless the form arranges them.
class Control : public PropertyBag {
 public:
  virtual std::string_view typeName() const = 0;
  const std::string& name() const { return text("Name"); }
  Form& form() const { return form_; }
  /// The frame that the control stands in, or null for the form itself.
  const Control* container() const { return container_; }

  bool enabled() const { return flag("Enabled"); }
  void setEnabled(bool enabled) { setFlag("Enabled", enabled); }
  bool visible() const { return flag("Visible"); }
  void setVisible(bool visible) { setFlag("Visible", visible); }
  /// Enabled and visible, and so is everything that contains it.
  bool reachable() const;

  /// Changes a property on the user's behalf: the observer is not told.
  void userSet(std::string_view property, const Value& value) { setQuietly(property, value); }

 protected:
  Control(Form& form, const Control* container, std::string_view name, Bounds bounds);
  void propertyChanged(std::string_view name) override;

 private:
  Form& form_;
  const Control* container_;
};

}  // namespace velk
