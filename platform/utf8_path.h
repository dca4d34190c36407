// Paths of the standard library from the system's texts.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velk {

/// Of a path's UTF-8, as the bytes stand; one made of plain characters would be in the code page on
/// Windows. The way back is string(), which is UTF-8 on every system.
inline std::filesystem::path toPath(std::string_view utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

}  // namespace velk
