// The documents of the source tree, as tests read them.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

using Lines = std::vector<std::string>;

inline std::string textOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The parts between the signs, empty ones left out.
inline Lines split(std::string_view text, char sign) {
  Lines parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(sign), text.size());
    if (end > 0) parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

/// Without those that are empty.
inline Lines linesOf(const std::filesystem::path& path) {
  return split(textOf(path), '\n');
}

/// All that a reader may come to.
inline std::vector<std::filesystem::path> allDocuments() {
  const std::filesystem::path root = OPNIMP_SOURCE_DIR;
  std::vector<std::filesystem::path> found;
  for (const char* folder : {".", "docs", "bench", "samples"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator((root / folder).lexically_normal())) {
      if (entry.path().extension() == ".md") found.push_back(entry.path());
    }
  }
  return found;
}

}  // namespace velk
