// Colours as the platform encodes them: 0x00BBGGRR, or a system colour with the high bit set.
#pragma once

#include <cstdint>

namespace velk {

/// The background of a control and its text.
struct ColorPair {
  std::int32_t back;
  std::int32_t fore;
};

namespace systemColor {

constexpr std::int32_t encode(std::uint32_t color) {
  return static_cast<std::int32_t>(color);
}
inline constexpr std::int32_t windowBackground = encode(0x80000005);
inline constexpr std::int32_t windowText = encode(0x80000008);
inline constexpr std::int32_t buttonFace = encode(0x8000000F);
inline constexpr std::int32_t buttonText = encode(0x80000012);

inline constexpr ColorPair window{windowBackground, windowText};
inline constexpr ColorPair face{buttonFace, buttonText};

}  // namespace systemColor

}  // namespace velk
