// Windows of another program, as a user sees them.
//
// What is waited for is waited for until it is so; when patience ends that is error 5, which says
// for what.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

inline constexpr DWORD patience = 30'000;  ///< milliseconds

void waitFor(std::string_view what, const std::function<bool()>& isSo);
/// Error 5: the tour does not find it.
[[noreturn]] void notThere(const std::string& what);

/// The visible top windows of one process.
class SeenWindows {
 public:
  explicit SeenWindows(DWORD process) : process_(process) {}

  /// The front one first.
  std::vector<HWND> all() const;

  /// Waits for a window with this title that has the keyboard.
  HWND titled(std::wstring_view title) const;
  /// Waits for a window of this class, such as a dialog or a menu.
  HWND ofClass(std::wstring_view windowClass) const;
  /// The front window of this class; null if there is none.
  HWND shownNow(std::wstring_view windowClass) const;
  /// Waits for a message box with this text.
  HWND messageBoxSaying(std::wstring_view text) const;

 private:
  HWND waitForOne(const std::string& what, const std::function<bool(HWND)>& fits) const;

  DWORD process_;
};

/// The visible windows inside a window.
std::vector<HWND> childWindows(HWND parent);

std::wstring textOf(HWND window);
/// To name a window in a message: its class and text.
std::string textShown(HWND window);
std::wstring classOf(HWND window);

void waitUntilGone(HWND window);
/// Waits until the window's thread takes messages again: a click before that may be dropped.
void waitUntilIdle(HWND window);

/// Windows inside a window, the higher ones first. Error 5 when there are not that many.
HWND childOfClass(HWND parent, std::wstring_view windowClass, std::size_t index = 0);
HWND buttonNamed(HWND parent, std::wstring_view caption);

/// The middle of a part of a window, on the display.
POINT middleOf(const RECT& part, HWND window);

/// The window with the keyboard in the thread of a window; null for none.
HWND focusIn(HWND window);

}  // namespace velk
