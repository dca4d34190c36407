// What a window shows of its form's long work: in the title bar, on the taskbar's button, and that
// it still paints.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

#include "platform/windows/taskbar_button.h"

namespace velk {

class ProgressDisplay {
 public:
  /// Ten times a second at most: paints what is due in the thread's windows, taking no input, and
  /// puts the progress before the caption in the title bar.
  void show(HWND window, const std::string& caption, std::size_t done, std::size_t total);
  /// The title bar has the caption alone again.
  void end(HWND window, const std::string& caption);

 private:
  ULONGLONG last_ = 0;                      ///< when it was shown; 0: no work is in progress
  std::optional<TaskbarProgress> taskbar_;  ///< from the first showing on
};

}  // namespace velk
