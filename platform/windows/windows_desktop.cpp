#include "platform/windows/windows_desktop.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/windows/modal_owner.h"
#include "platform/windows/module_path.h"
#include "platform/windows/pending_input.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

int showBox(const std::wstring& prompt, const std::wstring& caption, UINT style) {
  const ModalOwner owner;
  return MessageBoxW(owner.window(), prompt.c_str(), caption.c_str(), style | MB_TASKMODAL);
}

}  // namespace

std::int32_t WindowsDesktop::messageBox(std::string_view prompt, std::int32_t style,
                                        std::optional<std::string_view> caption) {
  dropPendingInput();  // it would dismiss the message unseen
  const std::wstring text = toWide(prompt);
  const std::wstring title = toWide(caption.value_or(libraryName));
  const auto asked = static_cast<UINT>(style);
  const int answer = showBox(text, title, asked);
  // 0: Windows does not know the style and has shown nothing.
  return answer != 0 ? answer : showBox(text, title, MB_OK | (asked & MB_ICONMASK));
}

std::string WindowsDesktop::applicationFolder() const {
  // The program's file, not that of this DLL.
  const std::wstring path = modulePath(nullptr);
  return fromWide(std::wstring_view(path).substr(0, path.rfind(L'\\')));
}

Date WindowsDesktop::now() const {
  SYSTEMTIME time{};
  GetLocalTime(&time);
  const int seconds = (time.wHour * 60 + time.wMinute) * 60 + time.wSecond;
  return dateFromCivil({time.wYear, time.wMonth, time.wDay}, seconds / double{secondsPerDay});
}

void WindowsDesktop::openDocument(std::string_view path) {
  ShellExecuteW(nullptr, L"open", toWide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void WindowsDesktop::waitCursor(bool on) {
  // Counted, because one work that waits may start another.
  waits_ += on ? 1 : -1;
  SetCursor(LoadCursorW(nullptr, waits_ > 0 ? IDC_WAIT : IDC_ARROW));
}

}  // namespace velk
