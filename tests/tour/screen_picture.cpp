#include "tests/tour/screen_picture.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "base/errors.h"
#include "base/text.h"
#include "tests/tour/seen_windows.h"

namespace velk {

namespace {

RECT coveredArea() {
  RECT all{};
  for (const HWND window : topWindows()) {
    RECT at;
    if (GetWindowRect(window, &at) != FALSE) UnionRect(&all, &all, &at);
  }
  const RECT display{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  IntersectRect(&all, &all, &display);
  return all;
}

bool isPainted() {
  for (const HWND window : topWindows()) {
    if (GetUpdateRect(window, nullptr, FALSE) != FALSE) return false;
    for (const HWND child : childWindows(window)) {
      if (GetUpdateRect(child, nullptr, FALSE) != FALSE) return false;
    }
  }
  return true;
}

Picture24 fromPixels(LONG width, LONG height, const std::vector<RGBQUAD>& pixels) {
  Picture24 picture{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), {}};
  picture.bytes.reserve(pixels.size() * 3);
  for (const RGBQUAD& pixel : pixels) {
    picture.bytes.insert(picture.bytes.end(), {pixel.rgbRed, pixel.rgbGreen, pixel.rgbBlue});
  }
  return picture;
}

}  // namespace

Picture24 displayedNow() {
  const RECT area = coveredArea();
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  const HDC display = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(display);
  const HBITMAP bitmap = CreateCompatibleBitmap(display, width, height);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, display, area.left, area.top, SRCCOPY);
  SelectObject(memory, before);
  BITMAPINFO format{};
  format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  std::vector<RGBQUAD> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  GetDIBits(display, bitmap, 0, static_cast<UINT>(height), pixels.data(), &format, DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, display);
  return fromPixels(width, height, pixels);
}

Picture24 takePicture() {
  Picture24 picture;
  waitFor("the windows to be painted", [&] {
    if (!isPainted()) return false;
    Picture24 next = displayedNow();
    const bool stands = next == picture;
    picture = std::move(next);
    return stands;
  });
  return picture;
}

void savePicture(const Picture24& picture, const std::string& path) {
  std::ofstream file(std::filesystem::path(toUtf16(path)), std::ios::binary);
  file << toPng(picture);
  file.close();
  if (!file) throw RuntimeError(ErrorNumber::PathFileAccess);
}

}  // namespace velk
