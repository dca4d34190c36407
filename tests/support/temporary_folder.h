// A folder for a test's files, gone with the object.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace velk {

/// A name that is no UTF-8. Windows, whose names are UTF-16, has none: there the sign for such.
#ifdef _WIN32
inline constexpr std::string_view noUtf8 = "\xEF\xBF\xBD";
#else
inline constexpr std::string_view noUtf8 = "\xFF";
#endif

/// Names, paths and contents are bytes; names and paths are UTF-8 on every system.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    const auto base = std::filesystem::temp_directory_path();
    for (int i = 0; folder_.empty(); ++i) {
      const auto folder = base / ("opnimp_test_" + std::to_string(i));
      if (std::filesystem::create_directory(folder)) folder_ = folder;
    }
  }
  /// Every file in it has to be closed by then.
  ~TemporaryFolder() { std::filesystem::remove_all(folder_); }

  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(std::string_view name) const {
    const std::u8string text = at(name).u8string();
    return {text.begin(), text.end()};
  }

  /// Writes a file and answers its path.
  std::string write(std::string_view name, std::string_view bytes) const {
    std::ofstream(at(name), std::ios::binary) << bytes;
    return path(name);
  }
  std::string read(std::string_view name) const {
    std::ifstream file(at(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool has(std::string_view name) const { return std::filesystem::exists(at(name)); }
  int files() const {
    const std::filesystem::directory_iterator entries(folder_);
    return static_cast<int>(std::distance(begin(entries), end(entries)));
  }

 private:
  std::filesystem::path at(std::string_view name) const {
    return (folder_ / std::u8string(name.begin(), name.end())).make_preferred();
  }

  std::filesystem::path folder_;
};

}  // namespace velk
