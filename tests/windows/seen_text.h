// Texts as a user sees them: looked for in a window's pixels, as the same text painted here.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "platform/windows/wide_text.h"

namespace velk {

/// How a text is painted.
struct Look {
  const wchar_t* face;
  COLORREF fore;
  COLORREF back;
  bool bold = false;
  double points = 9;
};

/// Pixels to paint on and to look at.
class Canvas {
 public:
  Canvas(int width, int height) : width_(width), height_(height) {
    BITMAPINFO format{};
    format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    bitmap_ = CreateDIBSection(dc_, &format, DIB_RGB_COLORS, &pixels_, nullptr, 0);
    before_ = SelectObject(dc_, bitmap_);
  }
  ~Canvas() {
    SelectObject(dc_, before_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC dc() const { return dc_; }
  RECT area() const { return {0, 0, width_, height_}; }
  /// Without the byte that no colour uses.
  std::uint32_t at(int x, int y) const {
    return static_cast<const std::uint32_t*>(pixels_)[y * width_ + x] & 0xFFFFFF;
  }

  /// Whether the pixels of a part of another canvas are somewhere in this one.
  bool contains(const Canvas& other, const RECT& part) const {
    for (int y = 0; y + part.bottom - part.top <= height_; ++y) {
      for (int x = 0; x + part.right - part.left <= width_; ++x) {
        if (isAt(x, y, other, part)) return true;
      }
    }
    return false;
  }

 private:
  bool isAt(int left, int top, const Canvas& other, const RECT& part) const {
    for (int y = part.top; y < part.bottom; ++y) {
      for (int x = part.left; x < part.right; ++x) {
        if (at(left + x - part.left, top + y - part.top) != other.at(x, y)) return false;
      }
    }
    return true;
  }

  int width_;
  int height_;
  HDC dc_ = CreateCompatibleDC(nullptr);
  void* pixels_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
};

/// Paints a text, an "&" as the underline of what follows; the part that is not
/// background.
inline RECT paintText(const Canvas& canvas, const std::string& text, const Look& look) {
  const int height =
      -MulDiv(static_cast<int>(look.points * 20), GetDeviceCaps(canvas.dc(), LOGPIXELSY), 1440);
  const HFONT font = CreateFontW(height, 0, 0, 0, look.bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE,
                                 FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, look.face);
  const HGDIOBJ before = SelectObject(canvas.dc(), font);
  SetTextColor(canvas.dc(), look.fore);
  SetBkColor(canvas.dc(), look.back);
  RECT all = canvas.area();
  ExtTextOutW(canvas.dc(), 0, 0, ETO_OPAQUE, &all, L"", 0, nullptr);
  DrawTextW(canvas.dc(), toWide(text).c_str(), -1, &all, DT_SINGLELINE);
  DeleteObject(SelectObject(canvas.dc(), before));
  const std::uint32_t ground = canvas.at(all.right - 1, all.bottom - 1);
  RECT painted{all.right, all.bottom, 0, 0};
  for (int y = 0; y < all.bottom; ++y) {
    for (int x = 0; x < all.right; ++x) {
      const RECT pixel{x, y, x + 1, y + 1};
      if (canvas.at(x, y) != ground) UnionRect(&painted, &painted, &pixel);
    }
  }
  return painted;
}

/// Whether the window shows the text in this look.
inline bool shows(HWND window, const std::string& text, const Look& look) {
  const Canvas expected(300, 30);
  const RECT part = paintText(expected, text, look);
  if (part.right <= part.left) return false;
  RECT inside{};
  GetClientRect(window, &inside);
  const Canvas seen(inside.right, inside.bottom);
  const HDC dc = GetDC(window);
  BitBlt(seen.dc(), 0, 0, inside.right, inside.bottom, dc, 0, 0, SRCCOPY);
  ReleaseDC(window, dc);
  GdiFlush();
  return seen.contains(expected, part);
}

/// The face of the font that a window was given.
inline std::string faceOf(HWND window) {
  LOGFONTW font{};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
  return fromWide(font.lfFaceName);
}

}  // namespace velk
