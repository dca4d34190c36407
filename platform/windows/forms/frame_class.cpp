#include "platform/windows/forms/frame_class.h"

#include "platform/windows/forms/control_window.h"
#include "platform/windows/forms/window_class.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr int captionIndent = 9;

void paintFrame(HWND window, ControlWindow& frame) {
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(window, &paint);
  const HGDIOBJ before =
      SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
  const std::wstring caption = toWide(frame.control().text("Caption"));
  const auto length = static_cast<int>(caption.size());
  SIZE text{};
  GetTextExtentPoint32W(dc, L"X", 1, &text);
  RECT border;
  GetClientRect(window, &border);
  border.top += text.cy / 2;
  DrawEdge(dc, &border, EDGE_ETCHED, BF_RECT);
  frame.colour(dc);
  if (length > 0) TextOutW(dc, captionIndent, 0, caption.c_str(), length);
  SelectObject(dc, before);
  EndPaint(window, &paint);
}

LRESULT CALLBACK frameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_SETFONT) return SetWindowLongPtrW(window, 0, static_cast<LONG_PTR>(wParam));
  if (message == WM_GETFONT) return GetWindowLongPtrW(window, 0);
  auto* frame = reinterpret_cast<ControlWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (frame == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  switch (message) {
    case WM_ERASEBKGND: {
      RECT all;
      GetClientRect(window, &all);
      const auto dc = reinterpret_cast<HDC>(wParam);
      FillRect(dc, &all, frame->colour(dc));
      return TRUE;
    }
    case WM_PAINT:
      paintFrame(window, *frame);
      return 0;
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC:
      return SendMessageW(GetParent(window), message, wParam, lParam);
    default:
      break;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

const wchar_t* frameClassName() {
  registerClass(frameClass, frameProcedure, sizeof(HFONT));
  return frameClass;
}

}  // namespace velk
