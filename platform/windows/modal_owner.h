// What a modal dialog of this thread belongs to.
#pragma once

#include <windows.h>

#include <vector>

namespace velk {

/// The thread's active window, or its topmost one that takes input when the user is in another
/// program: without an owner that program may cover a dialog. While this lives the thread's other
/// windows take no input, as the dialog itself keeps only its owner from it.
class ModalOwner {
 public:
  ModalOwner();
  ~ModalOwner();
  ModalOwner(const ModalOwner&) = delete;
  ModalOwner& operator=(const ModalOwner&) = delete;

  HWND window() const { return window_; }

 private:
  HWND window_ = nullptr;
  bool ownerStaysDisabled_ = false;
  std::vector<HWND> disabled_;
};

}  // namespace velk
