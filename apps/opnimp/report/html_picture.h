// The picture of a run's outcomes in a page: one bar, a slice for each.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

/// How a result is coloured, from the best to what was never tried.
enum class Tone { Good, Noted, Skipped, Refused, Doubtful, Untouched };

struct Slice {
  std::string name;
  Tone tone = Tone::Good;
  std::size_t count = 0;
};

/// The style's class of a tone.
std::string_view toneClass(Tone tone);
/// The bar; empty where there are no records. Even a single record of many thousands can be seen.
std::string outcomePicture(const std::vector<Slice>& slices);
/// A square that looks as the slices of a tone do.
std::string pictureKey(Tone tone);

}  // namespace velk
