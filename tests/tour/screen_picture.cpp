#include "tests/tour/screen_picture.h"

#include <windows.h>

#include <wincodec.h>
#include <wrl/client.h>

#include <algorithm>

#include "base/errors.h"
#include "platform/windows/com_errors.h"
#include "tests/tour/handles.h"

namespace velk {

namespace {

using Microsoft::WRL::ComPtr;

RECT coveredArea(const SeenWindows& windows) {
  RECT all{};
  for (const HWND window : windows.all()) {
    RECT at;
    if (GetWindowRect(window, &at) != FALSE) UnionRect(&all, &all, &at);
  }
  const RECT display{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  IntersectRect(&all, &all, &display);
  return all;
}

bool isPainted(const SeenWindows& windows) {
  const auto waits = [](HWND window) { return GetUpdateRect(window, nullptr, FALSE) != FALSE; };
  return std::ranges::none_of(windows.all(), [&](HWND window) {
    return waits(window) || std::ranges::any_of(childWindows(window), waits);
  });
}

ComPtr<IWICImagingFactory> imagingFactory() {
  ComPtr<IWICImagingFactory> factory;
  check(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                         IID_PPV_ARGS(&factory)));
  return factory;
}

}  // namespace

Picture paintedPicture(LONG width, LONG height, const std::function<void(HDC)>& paint) {
  BITMAPINFO format{};
  // A negative height: from the top.
  format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const UniqueDisplayDc display(GetDC(nullptr));
  void* pixels = nullptr;
  const UniqueBitmap bitmap(
      CreateDIBSection(display.get(), &format, DIB_RGB_COLORS, &pixels, nullptr, 0));
  if (!bitmap) throw RuntimeError(ErrorNumber::OutOfMemory);
  const UniqueMemoryDc memory(CreateCompatibleDC(display.get()));  // goes before what it draws on
  SelectObject(memory.get(), bitmap.get());
  paint(memory.get());
  GdiFlush();
  const auto* first = static_cast<const std::uint32_t*>(pixels);
  return {{},
          static_cast<std::uint32_t>(width),
          static_cast<std::uint32_t>(height),
          {first, first + static_cast<std::ptrdiff_t>(width) * height}};
}

Picture Picture::part(RECT area) const {
  const RECT all{at.x, at.y, at.x + static_cast<LONG>(width), at.y + static_cast<LONG>(height)};
  if (IntersectRect(&area, &area, &all) == FALSE) return {};
  Picture found{{area.left, area.top},
                static_cast<std::uint32_t>(area.right - area.left),
                static_cast<std::uint32_t>(area.bottom - area.top),
                {}};
  for (LONG y = area.top - at.y; y < area.bottom - at.y; ++y) {
    const auto first = pixels.begin() + y * static_cast<std::ptrdiff_t>(width) + area.left - at.x;
    found.pixels.insert(found.pixels.end(), first, first + found.width);
  }
  return found;
}

Picture displayedNow(const SeenWindows& windows) {
  const RECT area = coveredArea(windows);
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  Picture picture = paintedPicture(width, height, [&](HDC memory) {
    const UniqueDisplayDc display(GetDC(nullptr));
    BitBlt(memory, 0, 0, width, height, display.get(), area.left, area.top, SRCCOPY);
  });
  picture.at = {area.left, area.top};
  return picture;
}

// Two looks that are equal: windows paint in several steps, and some paint without being asked.
Picture takePicture(const SeenWindows& windows) {
  Picture picture;
  waitFor("the windows to be painted", [&] {
    if (!isPainted(windows)) return false;
    Picture next = displayedNow(windows);
    const bool unchanged = next == picture;
    picture = std::move(next);
    return unchanged;
  });
  return picture;
}

Picture takePicture(const SeenWindows& windows, const Picture& expected) {
  constexpr ULONGLONG enough = 3'000;  // milliseconds
  const ULONGLONG end = GetTickCount64() + enough;
  Picture picture = takePicture(windows);
  while (!differenceOf(picture, expected).empty() && GetTickCount64() < end) {
    picture = takePicture(windows);
  }
  return picture;
}

std::string differenceOf(const Picture& one, const Picture& other) {
  if (one.width != other.width || one.height != other.height) return "their size";
  RECT all{};
  for (LONG i = 0; i < static_cast<LONG>(one.pixels.size()); ++i) {
    constexpr std::uint32_t colors = 0xFFFFFF;
    if (((one.pixels[i] ^ other.pixels[i]) & colors) == 0) continue;
    const auto width = static_cast<LONG>(one.width);
    const RECT pixel{i % width, i / width, i % width + 1, i / width + 1};
    UnionRect(&all, &all, &pixel);
  }
  if (IsRectEmpty(&all) != FALSE) return {};
  return std::to_string(all.right - all.left) + " x " + std::to_string(all.bottom - all.top) +
         " pixels at " + std::to_string(all.left) + ", " + std::to_string(all.top);
}

// Wine's encoder takes rows of three bytes a pixel; WriteSource converts to them.
void savePicture(const Picture& picture, const std::wstring& path) {
  const auto factory = imagingFactory();
  std::vector<std::uint32_t> pixels = picture.pixels;
  const auto stride = static_cast<UINT>(picture.width * sizeof pixels[0]);
  ComPtr<IWICBitmap> bitmap;
  check(factory->CreateBitmapFromMemory(picture.width, picture.height, GUID_WICPixelFormat32bppBGR,
                                        stride, stride * picture.height,
                                        reinterpret_cast<BYTE*>(pixels.data()), &bitmap));
  ComPtr<IWICStream> file;
  check(factory->CreateStream(&file));
  check(file->InitializeFromFilename(path.c_str(), GENERIC_WRITE));
  ComPtr<IWICBitmapEncoder> encoder;
  check(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder));
  check(encoder->Initialize(file.Get(), WICBitmapEncoderNoCache));
  ComPtr<IWICBitmapFrameEncode> frame;
  check(encoder->CreateNewFrame(&frame, nullptr));
  check(frame->Initialize(nullptr));
  check(frame->WriteSource(bitmap.Get(), nullptr));
  check(frame->Commit());
  check(encoder->Commit());
}

Picture loadPicture(const std::wstring& path) {
  const auto factory = imagingFactory();
  ComPtr<IWICBitmapDecoder> decoder;
  check(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ,
                                           WICDecodeMetadataCacheOnDemand, &decoder));
  ComPtr<IWICBitmapFrameDecode> frame;
  check(decoder->GetFrame(0, &frame));
  ComPtr<IWICFormatConverter> bitmap;
  check(factory->CreateFormatConverter(&bitmap));
  check(bitmap->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGR, WICBitmapDitherTypeNone,
                           nullptr, 0, WICBitmapPaletteTypeCustom));
  Picture picture;
  check(bitmap->GetSize(&picture.width, &picture.height));
  picture.pixels.resize(static_cast<std::size_t>(picture.width) * picture.height);
  const auto stride = static_cast<UINT>(picture.width * sizeof picture.pixels[0]);
  check(bitmap->CopyPixels(nullptr, stride, stride * picture.height,
                           reinterpret_cast<BYTE*>(picture.pixels.data())));
  return picture;
}

}  // namespace velk
