#include "ui/form.h"

#include <new>
#include <utility>

#include "ui/colors.h"

namespace velk {

Form::Form(FormShell& shell, std::string_view name, std::string_view caption, const Bounds& design)
    : PropertyBag(name, design, false), shell_(shell) {
  declare({{Property::Caption, std::string(caption)},
           {Property::BackColor, systemColor::buttonFace},
           {Property::WindowState, static_cast<std::int32_t>(WindowState::Normal)},
           {Property::hWnd, 0}});
}

FormObserver& Form::observer() const {
  static FormObserver nobody;
  return observer_ == nullptr ? nobody : *observer_;
}

void Form::setBounds(const Bounds& bounds) {
  set(Property::Left, bounds.left);
  set(Property::Top, bounds.top);
  set(Property::Width, bounds.width);
  set(Property::Height, bounds.height);
}

void Form::setIcon(std::shared_ptr<const Picture> icon) {
  if (icon != nullptr) icon->requireIcon();
  icon_ = std::move(icon);
  propertyChanged(Property::Icon);
}

void Form::show() {
  open_ = true;
  setVisible(true);
  shell_.show(shared_from_this());
}

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
}

void Form::closeNow() {
  if (!std::exchange(open_, false)) return;
  const auto alive = shared_from_this();
  setVisible(false);
  shell_.closed(*this);
}

EventResult Form::dispatch(const std::function<void()>& handler) {
  if (!accepting_ || running_ || !open_) return EventResult::Dropped;
  const auto alive = shared_from_this();
  running_ = true;
  try {
    const EventResult result = runGuarded(handler);
    endRun();
    return result;
  } catch (...) {
    endRun();
    throw;
  }
}

void Form::endRun() {
  running_ = false;
  if (std::exchange(closeRequested_, false)) closeNow();
  if (std::exchange(resizePending_, false)) dispatch([this] { Form_Resize(); });
}

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

void Form::userResize(WindowState state, const Bounds& outer) {
  setQuietly(Property::WindowState, static_cast<std::int32_t>(state));
  setQuietly(Property::Left, outer.left);
  setQuietly(Property::Top, outer.top);
  setQuietly(Property::Width, outer.width);
  setQuietly(Property::Height, outer.height);
  resizePending_ = running_;
  dispatch([this] { Form_Resize(); });
}

void Form::userClose() {
  unload();
}

void Form::propertyChanged(Property property) {
  observer().formChanged(property);
}

}  // namespace velk
