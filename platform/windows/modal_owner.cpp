#include "platform/windows/modal_owner.h"

namespace velk {

namespace {

// Windows that are disabled already must not be enabled when the dialog ends.
BOOL CALLBACK addInput(HWND window, LPARAM to) noexcept {
  if (IsWindowVisible(window) == FALSE || IsWindowEnabled(window) == FALSE) return TRUE;
  try {
    reinterpret_cast<std::vector<HWND>*>(to)->push_back(window);
    return TRUE;
  } catch (...) {
    return FALSE;  // the others stay as they are
  }
}

}  // namespace

ModalOwner::ModalOwner() : window_(GetActiveWindow()) {
  EnumThreadWindows(GetCurrentThreadId(), addInput, reinterpret_cast<LPARAM>(&disabled_));
  // Windows lists them from top to bottom, so the first one is the topmost.
  if (window_ == nullptr && !disabled_.empty()) window_ = disabled_.front();
  // The dialog itself disables its owner and enables it at its end, disabled before or not.
  ownerStaysDisabled_ = window_ != nullptr && IsWindowEnabled(window_) == FALSE;
  std::erase(disabled_, window_);
  for (const HWND other : disabled_) EnableWindow(other, FALSE);
}

ModalOwner::~ModalOwner() {
  for (const HWND other : disabled_) EnableWindow(other, TRUE);
  if (ownerStaysDisabled_) EnableWindow(window_, FALSE);
}

}  // namespace velk
