#include "tests/tour/seen_windows.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "base/errors.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr ULONGLONG patience = 30'000;  // milliseconds
constexpr DWORD betweenLooks = 20;

BOOL CALLBACK addVisible(HWND window, LPARAM to) {
  if (IsWindowVisible(window) != FALSE) reinterpret_cast<std::vector<HWND>*>(to)->push_back(window);
  return TRUE;
}

POINT middle(const RECT& area, HWND of) {
  POINT point{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  ClientToScreen(of, &point);
  return point;
}

[[noreturn]] void notThere(const std::string& what) {
  throw RuntimeError(ErrorNumber::InvalidProcedureCall, "The tour does not find " + what);
}

template <class Fits>
HWND waitForTop(std::string_view what, Fits&& fits) {
  HWND found = nullptr;
  waitFor(what, [&] {
    const auto windows = topWindows();
    const auto place = std::ranges::find_if(windows, fits);
    found = place == windows.end() ? nullptr : *place;
    return found != nullptr;
  });
  return found;
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

std::vector<HWND> topWindows() {
  std::vector<HWND> windows;
  EnumWindows(addVisible, reinterpret_cast<LPARAM>(&windows));
  std::erase_if(windows, [](HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process != GetCurrentProcessId();
  });
  return windows;
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

std::wstring classOf(HWND window) {
  std::array<wchar_t, 256> name{};
  const int length = GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return {name.data(), static_cast<std::size_t>(length)};
}

HWND windowTitled(std::wstring_view title) {
  return waitForTop("the window " + fromWide(title), [&](HWND window) {
    return textOf(window) == title && GetForegroundWindow() == window;
  });
}

HWND windowOfClass(std::wstring_view windowClass) {
  return waitForTop("a window of the class " + fromWide(windowClass),
                    [&](HWND window) { return classOf(window) == windowClass; });
}

HWND messageBoxSaying(std::wstring_view text) {
  return waitForTop("the message " + fromWide(text), [&](HWND window) {
    return classOf(window) == L"#32770" && GetForegroundWindow() == window &&
           std::ranges::any_of(childWindows(window),
                               [&](HWND child) { return textOf(child) == text; });
  });
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

HWND focusIn(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

std::wstring cellText(HWND list, int row, int column) {
  std::array<wchar_t, 260> text{};
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return text.data();
}

int rowCount(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

POINT headerPoint(HWND list, int column) {
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  RECT area{};
  SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column),
               reinterpret_cast<LPARAM>(&area));
  return middle(area, header);
}

POINT cellPoint(HWND list, int row, int column) {
  RECT area{};
  area.top = column;
  area.left = LVIR_LABEL;
  SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
  return middle(area, list);
}

std::vector<std::wstring> columnTitles(HWND list) {
  std::vector<std::wstring> titles;
  std::array<wchar_t, 260> text{};
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT;
  column.pszText = text.data();
  column.cchTextMax = static_cast<int>(text.size());
  const auto read = [&] {
    return SendMessageW(list, LVM_GETCOLUMNW, titles.size(), reinterpret_cast<LPARAM>(&column));
  };
  while (read() != FALSE) titles.emplace_back(text.data());
  return titles;
}

int columnTitled(HWND list, std::wstring_view title) {
  const auto titles = columnTitles(list);
  const auto found = std::ranges::find(titles, title);
  if (found == titles.end()) notThere("the column " + fromWide(title));
  return static_cast<int>(found - titles.begin());
}

}  // namespace velk
