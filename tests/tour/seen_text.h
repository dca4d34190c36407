// Whether what is shown is shown in full.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/tour/screen_picture.h"
#include "tests/tour/seen_windows.h"

namespace velk {

/// Compares the text of every control, header and item of the host's window and of the screens with
/// its room there, and the pixels of headers with those of the text. Not asked are the cells of a
/// file (a column's width is the screens' and the user's own), the path in a file's box, which
/// scrolls, and the system's own dialogs.
class SeenTexts {
 public:
  SeenTexts(const SeenWindows& host, int dotsPerInch) : host_(host), dotsPerInch_(dotsPerInch) {}

  /// What is cut in the windows as they are displayed now; empty if nothing is. A control that
  /// looks as it did before, or is behind another window, is not asked again.
  std::string cut(const Picture& now);

 private:
  bool looksNew(HWND control, const std::vector<HWND>& inFront, const Picture& now);

  const SeenWindows& host_;
  int dotsPerInch_;
  std::map<HWND, Picture> looks_;
};

}  // namespace velk
