#include "ui/form.h"

#include <new>
#include <utility>

#include "ui/controls.h"

namespace velk {

Form::Form(FormShell& shell, std::string_view name, std::string_view caption, Bounds design)
    : shell_(shell) {
  declare({{"Name", std::string(name)},
           {"Caption", std::string(caption)},
           {"BackColor", systemColor::buttonFace},
           {"Left", design.left},
           {"Top", design.top},
           {"Width", design.width},
           {"Height", design.height},
           {"WindowState", static_cast<std::int32_t>(WindowState::Normal)},
           {"Visible", flagFalse},
           {"hWnd", 0}});
}

FormObserver& Form::observer() const {
  static FormObserver nobody;
  return observer_ == nullptr ? nobody : *observer_;
}

void Form::setBounds(Bounds bounds) {
  set("Left", bounds.left);
  set("Top", bounds.top);
  set("Width", bounds.width);
  set("Height", bounds.height);
}

Bounds Form::bounds() const {
  return {number("Left"), number("Top"), number("Width"), number("Height")};
}

void Form::setIcon(std::shared_ptr<const Picture> icon) {
  if (icon != nullptr) icon->requireIcon();
  icon_ = std::move(icon);
  observer().formChanged(*this, "Icon");
}

void Form::show() {
  open_ = true;
  setFlag("Visible", true);
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
  setFlag("Visible", false);
  shell_.closed(*this);
}

EventResult Form::dispatch(const Control* source, const std::function<void()>& handler) {
  if (!accepting_ || running_ || !open_) return EventResult::Dropped;
  if (source != nullptr && !source->reachable()) return EventResult::Dropped;
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
  if (std::exchange(resizePending_, false)) dispatch(nullptr, [this] { Form_Resize(); });
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
  dispatch(nullptr, [=, this] { Form_KeyDown(keyCode, shift); });
}

void Form::userResize(WindowState state, Bounds outer) {
  setQuietly("WindowState", static_cast<std::int32_t>(state));
  setQuietly("Left", outer.left);
  setQuietly("Top", outer.top);
  setQuietly("Width", outer.width);
  setQuietly("Height", outer.height);
  resizePending_ = running_;
  dispatch(nullptr, [this] { Form_Resize(); });
}

void Form::userClose() {
  unload();
}

void Form::popup(Menu& menu) {
  Menu* chosen = shell_.popup(*this, menu);
  // The menu itself is commonly hidden, so that no menu bar shows it: only the item counts.
  if (chosen == nullptr || !chosen->enabled() || !chosen->visible()) return;
  if (chosen->onClick) chosen->onClick();
}

void Form::propertyChanged(std::string_view name) {
  observer().formChanged(*this, name);
}

Control::Control(Form& form, const Control* container, std::string_view name, Bounds bounds)
    : form_(form), container_(container) {
  declare({{"Name", std::string(name)},
           {"Enabled", flagTrue},
           {"Visible", flagTrue},
           {"Left", bounds.left},
           {"Top", bounds.top},
           {"Width", bounds.width},
           {"Height", bounds.height}});
  form.controls_.push_back(this);
}

bool Control::reachable() const {
  for (const Control* c = this; c != nullptr; c = c->container_) {
    if (!c->enabled() || !c->visible()) return false;
  }
  return true;
}

void Control::propertyChanged(std::string_view name) {
  form_.observer().controlChanged(*this, name);
}

}  // namespace velk
