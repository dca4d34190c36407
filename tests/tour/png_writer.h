// Pictures as PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velk {

/// Pixels from the top left, row by row, three bytes each: red, green, blue.
struct Picture24 {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<std::uint8_t> bytes;

  bool operator==(const Picture24&) const = default;
};

/// The picture as a PNG file (RFC 2083) in true colour. It packs runs of equal pixels and lines
/// that repeat the one above, which is what pictures of windows are made of.
std::string toPng(const Picture24& picture);

}  // namespace velk
