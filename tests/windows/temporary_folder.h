// A folder for a test's files.
#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/windows/wide_text.h"

namespace velk {

class TemporaryFolder {
 public:
  TemporaryFolder() { std::filesystem::create_directory(path_); }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  int files() const {
    const std::filesystem::directory_iterator entries(path_);
    return static_cast<int>(std::distance(begin(entries), end(entries)));
  }
  void write(const std::string& name, std::string_view content) const {
    std::ofstream(path_ / toWide(name)) << content;
  }
  std::string content(const std::string& name) const {
    std::ifstream file(path_ / toWide(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string path(const std::string& name) const {
    return fromWide((path_ / toWide(name)).wstring());
  }

 private:
  std::filesystem::path path_ =
      std::filesystem::temp_directory_path() / ("files" + std::to_string(GetCurrentProcessId()));
};

}  // namespace velk
