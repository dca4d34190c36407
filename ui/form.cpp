#include "ui/form.h"

#include <algorithm>
#include <new>
#include <utility>

#include "ui/colors.h"

namespace velk {

Form::Form(FormShell& shell, std::string_view name, std::string_view caption, const Bounds& design)
    : PropertyBag(name, design, false), shell_(shell) {
  declare({{Property::Caption, std::string(caption)},
           {Property::BackColor, systemColor::buttonFace},
           {Property::Enabled, flagTrue},
           {Property::Tag, ""},
           {Property::WindowState, static_cast<std::int32_t>(WindowState::Normal)},
           {Property::hWnd, 0}});
}

void Form::setBounds(const Bounds& bounds) {
  set(Property::Left, bounds.left);
  set(Property::Top, bounds.top);
  set(Property::Width, bounds.width);
  set(Property::Height, bounds.height);
}

void Form::setTabOrder(std::vector<Control*> order) {
  tabOrder_ = std::move(order);
  propertyChanged(Property::TabOrder);
}

void Form::setIcon(std::shared_ptr<const Picture> icon) {
  if (icon != nullptr) icon->requireIcon();  // before the form keeps it: a shell could only fail
  icon_ = std::move(icon);
  propertyChanged(Property::Icon);
}

void Form::show() {
  open_ = true;
  setVisible(true);
  shell_.show(shared_from_this());
}

// A handler, and the set-up, still use the form when they ask for its end, so it waits for theirs.
void Form::unload() {
  const bool settingUp = open_ && !accepting_;
  if (running_ || settingUp) {
    closeRequested_ = true;
  } else {
    closeNow();
  }
}

void Form::acceptEvents() {
  accepting_ = true;
  if (std::exchange(closeRequested_, false)) closeNow();
  if (std::exchange(resizePending_, false)) resized();
}

void Form::closeNow() {
  if (!std::exchange(open_, false)) return;
  const auto alive = shared_from_this();  // the shell may hold the last reference
  setVisible(false);
  shell_.closed(*this);
}

// An exception that is not ours, such as the one that ends a thread, goes on to the caller; the
// form must not be left running because of it.
EventResult Form::dispatch(const std::function<void()>& handler) {
  if (!accepting_ || running_ || !open_) return EventResult::Dropped;
  const auto alive = shared_from_this();
  running_ = true;
  try {
    // When this returns, `alive` may be the last reference: the handler may have closed the form.
    const EventResult result = runGuarded(handler);
    endRun();
    return result;
  } catch (...) {
    endRun();
    throw;
  }
}

// The close comes first: a form that is closed has no use for a new size.
void Form::endRun() {
  running_ = false;
  if (std::exchange(closeRequested_, false)) closeNow();
  if (std::exchange(resizePending_, false)) resized();
}

// The host lives on whatever a handler does: all that the standard library throws becomes an error
// that the user is told of.
EventResult Form::runGuarded(const std::function<void()>& handler) {
  try {
    handler();
    return EventResult::Handled;
  } catch (const RuntimeError& error) {
    eventFailed(error);
  } catch (const std::bad_alloc&) {
    eventFailed(RuntimeError(ErrorNumber::OutOfMemory));
  } catch (const std::exception& error) {
    eventFailed(RuntimeError(ErrorNumber::InvalidProcedureCall, error.what()));
  }
  return EventResult::Failed;
}

void Form::userKeyDown(std::int16_t keyCode, std::int16_t shift) {
  dispatch([=, this] { Form_KeyDown(keyCode, shift); });
}

// Nothing of this is told to the observer, whose window has it already.
void Form::userResize(WindowState state, const Bounds& outer) {
  setQuietly(Property::WindowState, static_cast<std::int32_t>(state));
  setQuietly(Property::Left, outer.left);
  setQuietly(Property::Top, outer.top);
  setQuietly(Property::Width, outer.width);
  setQuietly(Property::Height, outer.height);
  resized();
}

// While a handler or the set-up runs, dispatch drops the event; their ends make up for it.
void Form::resized() {
  resizePending_ = running_ || !accepting_;
  dispatch([this] {
    const struct Resizing {
      bool& flag;
      ~Resizing() { flag = false; }
    } resizing{resizing_ = true};
    Form_Resize();
  });
}

void Form::propertyChanged(Property property) {
  if (observer_ != nullptr) observer_->formChanged(property);
  const bool sizes = property == Property::Width || property == Property::Height ||
                     property == Property::WindowState;
  if (sizes && !resizing_) resized();
}

}  // namespace velk
