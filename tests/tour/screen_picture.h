// Pictures of what another program shows.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/tour/seen_windows.h"

namespace velk {

struct Picture {
  POINT at{};  ///< of its upper left corner on the display
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  /// Row by row from the top left: blue, green, red and an unused byte, from the lowest byte on.
  std::vector<std::uint32_t> pixels;

  bool operator==(const Picture& other) const {
    return width == other.width && height == other.height && pixels == other.pixels;
  }
  /// What it shows of a part of the display.
  Picture part(RECT area) const;
};

/// What `paint` paints.
Picture paintedPicture(LONG width, LONG height, const std::function<void(HDC)>& paint);
/// The part of the display that the windows cover, as it is now.
Picture displayedNow(const SeenWindows& windows);
/// The same once it is all painted and does not change any more.
Picture takePicture(const SeenWindows& windows);
/// The same; windows that do not look as expected get some seconds to come to it.
Picture takePicture(const SeenWindows& windows, const Picture& expected);

/// Where two pictures differ, such as "40 x 12 pixels at 360, 385"; empty if they do not.
std::string differenceOf(const Picture& one, const Picture& other);

/// PNG files, by the system's imaging component. Errors: what that says.
void savePicture(const Picture& picture, const std::wstring& path);
Picture loadPicture(const std::wstring& path);

}  // namespace velk
