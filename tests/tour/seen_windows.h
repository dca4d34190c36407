// This program's windows as a user sees them. To be used by another thread than theirs.
//
// What is waited for is waited for until it is so; after half a minute that is error 5, which says
// for what.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

void waitFor(std::string_view what, const std::function<bool()>& isSo);

/// The visible windows of this program, the front one first.
std::vector<HWND> topWindows();
/// The visible windows inside a window.
std::vector<HWND> childWindows(HWND parent);

std::wstring textOf(HWND window);
std::wstring classOf(HWND window);

/// Waits for a window with this title that has the keyboard.
HWND windowTitled(std::wstring_view title);
/// Waits for a window of this class in front of the others, such as a dialog or a menu.
HWND windowOfClass(std::wstring_view windowClass);
/// Waits for a message box with this text.
HWND messageBoxSaying(std::wstring_view text);
void waitUntilGone(HWND window);
/// Waits until the window's thread takes messages again: a click before that may be dropped.
void waitUntilIdle(HWND window);

/// Windows inside a window, the higher ones first. Error 5 when there are not that many.
HWND childOfClass(HWND parent, std::wstring_view windowClass, std::size_t index = 0);
HWND buttonNamed(HWND parent, std::wstring_view caption);

/// The window with the keyboard in the thread of a window; null for none.
HWND focusIn(HWND window);

// Report lists, rows and columns from 0
std::wstring cellText(HWND list, int row, int column);
int rowCount(HWND list);
/// In the middle of a column's header, and of a cell, on the display. Error 5 for no such column.
POINT headerPoint(HWND list, int column);
POINT cellPoint(HWND list, int row, int column);
std::vector<std::wstring> columnTitles(HWND list);
int columnTitled(HWND list, std::wstring_view title);

}  // namespace velk
