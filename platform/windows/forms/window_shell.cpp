#include "platform/windows/forms/window_shell.h"

#include <algorithm>

#include "platform/windows/floating_point.h"
#include "platform/windows/forms/form_window.h"
#include "platform/windows/forms/window_class.h"
#include "platform/windows/pending_input.h"

namespace velk {

namespace {

BOOL CALLBACK closeForm(HWND window, LPARAM) noexcept {
  try {
    if (const auto found = FormWindow::of(window)) found->form().unload();
  } catch (...) {
    // It stays open: no exception may reach the system, and the other forms close all the same.
  }
  return TRUE;
}

// While a menu is open its own loop takes the messages, with the keys addressed to the window
// behind.
bool menuIsOpen() {
  GUITHREADINFO thread{};
  thread.cbSize = sizeof thread;
  return GetGUIThreadInfo(GetCurrentThreadId(), &thread) != FALSE &&
         (thread.flags & GUI_INMENUMODE) != 0;
}

void handleRemoved(MSG& message) {
  if (message.message == WM_QUIT) {
    EnumThreadWindows(GetCurrentThreadId(), closeForm, 0);
  } else if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST && !menuIsOpen()) {
    const auto window = FormWindow::of(message.hwnd);
    if (window != nullptr && window->preTranslate(message)) message.message = WM_NULL;
  }
}

// The host's message loop knows nothing of our keyboard: a hook sees each message that it takes.
// Handling one dispatches it, so the hook is entered anew, and its window may be gone afterwards.
// With the loop's end the forms close, those with a run in progress when that has ended: later no
// one would, and what they hold of the host would outlive it.
LRESULT CALLBACK seeMessage(int code, WPARAM removed, LPARAM lParam) {
  auto& message = *reinterpret_cast<MSG*>(lParam);
  if (code >= 0 && removed == PM_REMOVE && !dropsPendingInput()) {
    const MaskedFloatingPoint masked;
    try {
      handleRemoved(message);
    } catch (...) {
      // No exception crosses Windows: what a handler lets out was told to the user before.
    }
  }
  return CallNextHookEx(nullptr, code, removed, lParam);
}

}  // namespace

WindowShell::WindowShell(std::function<std::shared_ptr<void>()> keeper)
    : keeper_(std::move(keeper)) {}

WindowShell::~WindowShell() {
  windows_.clear();  // a class with a window cannot be forgotten
  unhook();
}

WindowShell::Windows::iterator WindowShell::find(const Form& form) {
  return std::ranges::find_if(windows_, [&](const auto& w) { return &w->form() == &form; });
}

void WindowShell::show(std::shared_ptr<Form> form) {
  if (find(*form) != windows_.end()) return;
  auto window = std::make_shared<FormWindow>(std::move(form), keeper_());
  windows_.push_back(window);
  hook();
  window->show();
}

void WindowShell::closed(Form& form) noexcept {
  const auto found = find(form);
  if (found == windows_.end()) return;
  const auto window = *found;  // what contains the shell may go with it
  windows_.erase(found);
  window->destroy();
  if (windows_.empty()) unhook();
}

Menu* WindowShell::popup(Menu& menu) {
  const auto found = find(menu.form());
  if (found == windows_.end()) return nullptr;
  const auto window = *found;  // the form may close while the menu is open
  return window->popup(menu);
}

void WindowShell::hook() {
  if (!hook_) {
    // For this thread only, so that no other program has to load the DLL.
    hook_.reset(SetWindowsHookExW(WH_GETMESSAGE, seeMessage, nullptr, GetCurrentThreadId()));
  }
}

void WindowShell::unhook() noexcept {
  hook_.reset();
  forgetClasses();
}

}  // namespace velk
