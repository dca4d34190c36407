#include "platform/windows/forms/window_factory.h"

#include "platform/windows/floating_point.h"
#include "platform/windows/forms/window_class.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

constexpr int captionIndent = 9;  // pixels, where the platform's own frames have it

class FrameWindow final : public ControlWindow {
 public:
  // CONTROLPARENT lets the Tab key reach the controls inside.
  FrameWindow(Frame& frame, const ControlPlace& place)
      : ControlWindow(frame, place, registeredClass(frameClass, procedure), WS_CLIPCHILDREN,
                      WS_EX_CONTROLPARENT) {
    SetWindowLongPtrW(handle(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept try {
    const auto* frame = reinterpret_cast<FrameWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    // Null while CreateWindow runs: the constructor has not set it yet.
    if (frame == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    const MaskedFloatingPoint masked;
    switch (message) {
      case WM_ERASEBKGND:
        frame->erase(reinterpret_cast<HDC>(wParam));
        return TRUE;
      case WM_PAINT:
        frame->paint();
        return 0;
      case WM_GETFONT:  // screen readers and the like ask for it
        return reinterpret_cast<LRESULT>(frame->font());
      // A control tells its parent, but it is the form's window that knows the controls.
      case WM_COMMAND:
      case WM_NOTIFY:
      case WM_CTLCOLOREDIT:
      case WM_CTLCOLORLISTBOX:
      case WM_CTLCOLORBTN:
      case WM_CTLCOLORSTATIC:
        return SendMessageW(GetParent(window), message, wParam, lParam);
      default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
  } catch (...) {
    return 0;  // no exception crosses Windows; the next painting tries again
  }

  void erase(HDC dc) const {
    RECT all;
    GetClientRect(handle(), &all);
    FillRect(dc, &all, color(dc));
  }

  void paint() const {
    // First, as it may throw, and a painting that was begun has to be ended.
    const std::wstring caption = toWide(control().text(Property::Caption));
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(handle(), &paint);
    const HGDIOBJ before = SelectObject(dc, font());
    SIZE letter{};
    GetTextExtentPoint32W(dc, L"X", 1, &letter);
    RECT border;
    GetClientRect(handle(), &border);
    border.top += letter.cy / 2;  // the caption interrupts the upper line
    DrawEdge(dc, &border, EDGE_ETCHED, BF_RECT);
    color(dc);
    if (!caption.empty()) {
      TextOutW(dc, captionIndent, 0, caption.c_str(), static_cast<int>(caption.size()));
    }
    SelectObject(dc, before);
    EndPaint(handle(), &paint);
  }
};

}  // namespace

std::unique_ptr<ControlWindow> makeFrameWindow(Frame& frame, const ControlPlace& place) {
  return std::make_unique<FrameWindow>(frame, place);
}

}  // namespace velk
