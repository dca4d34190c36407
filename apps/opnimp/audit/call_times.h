// How long calls took, sorted by bounds, in as much memory for a million as for one.
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>

namespace velk {

struct CallTimes {
  using Duration = std::chrono::duration<double>;
  /// In seconds; each bound belongs to what is below it.
  static constexpr auto bounds =
      std::to_array({0.0005, 0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 5.0, 30.0});

  std::array<std::size_t, bounds.size() + 1> counts{};  ///< the last one: above all bounds
  Duration sum{};

  void add(Duration took) {
    const auto* const bound = std::ranges::lower_bound(bounds, took.count());
    ++counts[static_cast<std::size_t>(bound - bounds.begin())];
    sum += took;
  }
};

}  // namespace velk
