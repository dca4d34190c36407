// The button that the taskbar has for a window.
#pragma once

#include <windows.h>

#include <shobjidl.h>

#include <cstddef>

#include "platform/windows/com_pointer.h"

namespace velk {

/// Shows how far the window's work is, from its making until its end. Where there is no taskbar, or
/// one that cannot, it does nothing.
class TaskbarProgress {
 public:
  explicit TaskbarProgress(HWND window);
  ~TaskbarProgress();
  TaskbarProgress(const TaskbarProgress&) = delete;
  TaskbarProgress& operator=(const TaskbarProgress&) = delete;

  /// `total` 0: nobody knows how much there is to do.
  void show(std::size_t done, std::size_t total) const;

 private:
  HWND window_;
  ComPtr<ITaskbarList3> taskbar_;
};

}  // namespace velk
