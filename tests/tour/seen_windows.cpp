#include "tests/tour/seen_windows.h"

#include <algorithm>
#include <array>

#include "base/errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr DWORD betweenLooks = 20;

BOOL CALLBACK addVisible(HWND window, LPARAM to) {
  if (IsWindowVisible(window) != FALSE) reinterpret_cast<std::vector<HWND>*>(to)->push_back(window);
  return TRUE;
}

LONG topOf(HWND window) {
  RECT at{};
  GetWindowRect(window, &at);
  return at.top;
}

}  // namespace

void waitFor(std::string_view what, const std::function<bool()>& isSo) {
  const ULONGLONG end = GetTickCount64() + patience;
  while (!isSo()) {
    if (GetTickCount64() > end) {
      throw RuntimeError(ErrorNumber::InvalidProcedureCall,
                         "The tour waited in vain for " + std::string(what));
    }
    Sleep(betweenLooks);
  }
}

void notThere(const std::string& what) {
  throw RuntimeError(ErrorNumber::InvalidProcedureCall, "The tour does not find " + what);
}

std::vector<HWND> SeenWindows::all() const {
  std::vector<HWND> windows;
  EnumWindows(addVisible, reinterpret_cast<LPARAM>(&windows));
  std::erase_if(windows, [this](HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process != process_;
  });
  return windows;
}

HWND SeenWindows::waitForOne(const std::string& what, const std::function<bool(HWND)>& fits) const {
  HWND found = nullptr;
  waitFor(what, [&] {
    const auto windows = all();
    const auto place = std::ranges::find_if(windows, fits);
    found = place == windows.end() ? nullptr : *place;
    return found != nullptr;
  });
  return found;
}

HWND SeenWindows::titled(std::wstring_view title) const {
  return waitForOne("the window " + fromWide(title), [&](HWND window) {
    return textOf(window) == title && GetForegroundWindow() == window;
  });
}

HWND SeenWindows::ofClass(std::wstring_view windowClass) const {
  return waitForOne("a window of the class " + fromWide(windowClass),
                    [&](HWND window) { return classOf(window) == windowClass; });
}

HWND SeenWindows::shownNow(std::wstring_view windowClass) const {
  const auto windows = all();
  const auto found = std::ranges::find(windows, windowClass, classOf);
  return found == windows.end() ? nullptr : *found;
}

HWND SeenWindows::messageBoxSaying(std::wstring_view text) const {
  return waitForOne("the message " + fromWide(text), [&](HWND window) {
    return classOf(window) == L"#32770" && GetForegroundWindow() == window &&
           std::ranges::any_of(childWindows(window),
                               [&](HWND child) { return textOf(child) == text; });
  });
}

std::vector<HWND> childWindows(HWND parent) {
  std::vector<HWND> windows;
  EnumChildWindows(parent, addVisible, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

std::wstring textOf(HWND window) {
  std::array<wchar_t, 1024> text{};
  const LRESULT length =
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  return {text.data(), static_cast<std::size_t>(length)};
}

std::string textShown(HWND window) {
  return fromWide(classOf(window) + L" \"" + textOf(window) + L'"');
}

std::wstring classOf(HWND window) {
  std::array<wchar_t, 256> name{};
  const int length = GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return {name.data(), static_cast<std::size_t>(length)};
}

void waitUntilGone(HWND window) {
  waitFor("a window to close", [&] { return IsWindowVisible(window) == FALSE; });
}

void waitUntilIdle(HWND window) {
  SendMessageW(window, WM_NULL, 0, 0);
}

HWND childOfClass(HWND parent, std::wstring_view windowClass, std::size_t index) {
  auto windows = childWindows(parent);
  std::erase_if(windows, [&](HWND window) { return classOf(window) != windowClass; });
  std::ranges::sort(windows, {}, topOf);
  if (index >= windows.size()) notThere("a child window of the class " + fromWide(windowClass));
  return windows[index];
}

HWND buttonNamed(HWND parent, std::wstring_view caption) {
  const auto windows = childWindows(parent);
  const auto found = std::ranges::find_if(windows, [&](HWND window) {
    return classOf(window) == L"Button" && textOf(window) == caption;
  });
  if (found == windows.end()) notThere("the button " + fromWide(caption));
  return *found;
}

POINT middleOf(const RECT& part, HWND window) {
  POINT point{(part.left + part.right) / 2, (part.top + part.bottom) / 2};
  ClientToScreen(window, &point);
  return point;
}

HWND focusIn(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

}  // namespace velk
