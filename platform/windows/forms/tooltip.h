// The text that appears where the pointer rests.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <initializer_list>
#include <string_view>
#include <vector>

namespace velk {

class Tooltip {
 public:
  /// One for all these windows; it goes with the form that they are in.
  explicit Tooltip(std::initializer_list<HWND> windows);
  /// An empty text never appears.
  void setText(std::string_view text) const;

 private:
  std::vector<HWND> windows_;
  HWND handle_;
};

}  // namespace velk
