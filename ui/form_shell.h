// What a form needs of the shell that shows it, and what the shell hears of the form.
#pragma once

#include <cstddef>
#include <memory>

#include "ui/property.h"

namespace velk {

class Control;
class Form;
class Menu;

/// An icon handed over by the host; only shells know what is in it.
class Picture {
 public:
  virtual ~Picture() = default;
  /// Error 481 when it is no icon.
  virtual void requireIcon() const {}
};

/// Hears what code changed in one form; what the shell itself reports as the user's doing is not
/// echoed.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void formChanged(Property) {}
  virtual void controlChanged(Control&, Property) {}
  /// A handler that takes its time has done `done` of `total` records; of unknown many if 0.
  virtual void workProgressed(std::size_t /*done*/, std::size_t /*total*/) {}
  virtual void workEnded() noexcept {}
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
  virtual Menu* popup(Menu& menu) = 0;
};

}  // namespace velk
