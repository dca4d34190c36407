// How wide texts are in the default font.
#pragma once

#include <cstddef>
#include <string_view>

namespace velk::xls {

inline constexpr std::string_view defaultFontName = "Arial";
inline constexpr std::size_t defaultFontPoints = 10;

/// In widths of a digit, which is what columns are measured in. An estimate for letters that are
/// neither Latin nor as wide as a Chinese one.
double widthInDigits(std::string_view text, bool bold);

}  // namespace velk::xls
