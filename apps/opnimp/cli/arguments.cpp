#include "apps/opnimp/cli/arguments.h"

#include <filesystem>

#include "platform/utf8_path.h"

namespace velk {

const std::string_view lockHoldersCommand = "lock-holders";

std::string numbered(const std::string& path, std::size_t number) {
  std::filesystem::path named = toPath(path);
  const std::string extension = named.extension().string();
  return named.replace_extension(toPath("." + std::to_string(number) + extension)).string();
}

std::vector<Arguments> eachFile(const Arguments& arguments) {
  std::vector<Arguments> each(arguments.files.size(), arguments);
  for (std::size_t i = 0; i < each.size(); ++i) {
    each[i].file = arguments.files[i];
    if (each.size() == 1) continue;
    for (auto* output : {&each[i].rejects, &each[i].report}) {
      if (*output) *output = numbered(**output, i + 1);
    }
  }
  return each;
}

}  // namespace velk
