// Includes go downwards only, and operating-system headers stay in the folders that may use them.
#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;
using View = std::string_view;

struct Rule {
  View subject;
  std::vector<View> folders;
};

// The folders whose headers a folder's files may include. The first row that holds a file counts.
const std::vector<Rule> layers{
    {"platform/windows", {"platform/windows", "platform"}},
    {"platform/native", {"platform/native", "platform"}},
    {"platform/odbc", {"platform/odbc", "platform"}},
    {"platform/xls", {"platform/xls", "platform"}},
    {"platform/headless", {"platform/headless", "platform"}},
    {"platform", {"platform"}},
    {"shared", {"shared", "platform"}},
    {"mapping", {"mapping", "shared", "platform"}},
    {"opening", {"opening", "mapping", "shared", "platform"}},
    {"masters", {"masters", "mapping", "shared", "platform"}},
    {"component",
     {"component/com", "component", "masters", "opening", "mapping", "shared", "platform"}},
    {"samples/company", {"samples/company", "platform/odbc", "platform"}},
};

// Starts of headers that are not the standard library's, and who may include them besides apps
// and tests.
const std::vector<Rule> foreign{
    {"windows.h", {"component/com", "platform/windows", "platform/odbc"}},
    {"sql", {"platform/odbc"}},
    {"unistd.h", {"platform/native"}},
    {"fcntl.h", {"platform/native"}},
    {"sys/", {"platform/native"}},
};

bool isIn(View path, View folder) {
  return path.starts_with(folder) && path.substr(folder.size()).starts_with('/');
}

const Rule* layerOf(View file) {
  const auto holds = [&](const Rule& layer) { return isIn(file, layer.subject); };
  const auto found = std::find_if(layers.begin(), layers.end(), holds);
  return found == layers.end() ? nullptr : &*found;
}

/// `include` with its quotes or brackets.
bool allowed(View file, View include) {
  const View header = include.substr(1, include.size() - 2);
  if (include.front() == '"') {
    const auto& folders = layerOf(file)->folders;
    const View folder = header.substr(0, header.rfind('/'));
    return std::find(folders.begin(), folders.end(), folder) != folders.end();
  }
  const auto mayUse = [&](View folder) { return isIn(file, folder); };
  return std::all_of(foreign.begin(), foreign.end(), [&](const Rule& rule) {
    return !header.starts_with(rule.subject) ||
           std::any_of(rule.folders.begin(), rule.folders.end(), mayUse);
  });
}

/// The includes of a file that it may not have; how many it has is added to `checked`.
std::vector<std::string> forbiddenIncludes(const fs::path& path, View file, int& checked) {
  std::vector<std::string> found;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    if (!line.starts_with("#include ")) continue;
    ++checked;
    const std::string include = line.substr(9, line.find_last_of(">\"") - 8);
    if (!allowed(file, include)) found.push_back(include);
  }
  return found;
}

TEST_CASE("includes go only downwards") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  int checked = 0;
  for (const Rule& layer : layers) {
    if (!fs::exists(root / layer.subject)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / layer.subject)) {
      const std::string extension = entry.path().extension().string();
      const std::string file = fs::relative(entry.path(), root).generic_string();
      if ((extension != ".h" && extension != ".cpp") || layerOf(file) != &layer) continue;
      CAPTURE(file);
      CHECK(forbiddenIncludes(entry.path(), file, checked) == std::vector<std::string>{});
    }
  }
  CHECK(checked > 100);
}

TEST_CASE("the layer check refuses what it should") {
  const std::pair<const char*, const char*> rows[] = {
      {"platform/form.cpp", "\"shared/csv_text.h\""},
      {"platform/form.cpp", "\"platform/odbc/odbc_connection.h\""},
      {"shared/csv_text.cpp", "\"mapping/csv_table.h\""},
      {"shared/csv_text.cpp", "\"platform/native/native_files.h\""},
      {"opening/opening_import.cpp", "\"masters/bank_import.h\""},
      {"mapping/csv_table.cpp", "<windows.h>"},
      {"platform/headless/headless.cpp", "<sys/stat.h>"}};
  for (const auto& row : rows) {
    CAPTURE(row.second);
    CHECK_FALSE(allowed(row.first, row.second));
  }
}

}  // namespace
