#include "apps/host/host_errors.h"

#include <filesystem>

namespace velk {

RuntimeError explained(const RuntimeError& error, std::string_view whatFailed,
                       std::string_view whatToDo) {
  std::string story(whatFailed);
  story.append("\n\n").append(error.description()).append("\n\n").append(whatToDo);
  return {error.number(), story};
}

std::string fullPath(const std::string& path) {
  std::error_code failed;  // then the name as it was given says enough
  // As UTF-8: a path of plain characters would be in the code page.
  const auto full =
      std::filesystem::absolute(std::u8string(path.begin(), path.end()), failed).u8string();
  return failed ? path : std::string(full.begin(), full.end());
}

}  // namespace velk
