// What the benchmarks of conversions share.
#pragma once

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace velk::bench {

inline std::string readFile(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Of the records: as many values as there are titles in each line below them.
inline std::size_t cellsOf(std::string_view text, char separator) {
  const std::string_view titles = text.substr(0, text.find('\n'));
  const auto lines = std::ranges::count(text, '\n');
  return static_cast<std::size_t>((lines - 1) * (std::ranges::count(titles, separator) + 1));
}

}  // namespace velk::bench
