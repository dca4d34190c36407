#include "platform/windows/forms/tooltip.h"

#include "platform/windows/module_path.h"
#include "platform/windows/scale.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr int widestInTwips = 4500;  // longer texts take several lines

TTTOOLINFOW toolOf(HWND window, wchar_t* text) {
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;  // what older common controls know
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = GetParent(window);
  tool.uId = reinterpret_cast<UINT_PTR>(window);
  tool.lpszText = text;
  return tool;
}

}  // namespace

// Without the class no tooltip appears, and nothing else is lost.
Tooltip::Tooltip(std::initializer_list<HWND> windows)
    : windows_(windows),
      handle_(CreateWindowExW(
          WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0, 0,
          GetAncestor(windows_.front(), GA_ROOT), nullptr, thisModule(), nullptr)) {
  SendMessageW(handle_, TTM_SETMAXTIPWIDTH, 0, Scale::ofDisplay().pixels(widestInTwips));
  std::wstring none;
  for (const HWND window : windows_) {
    const TTTOOLINFOW tool = toolOf(window, none.data());
    SendMessageW(handle_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

void Tooltip::setText(std::string_view text) const {
  std::wstring shown = toWide(text);
  for (const HWND window : windows_) {
    const TTTOOLINFOW tool = toolOf(window, shown.data());
    SendMessageW(handle_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

}  // namespace velk
