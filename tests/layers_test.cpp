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

struct Layer {
  std::string_view folder;
  std::vector<std::string_view> mayInclude;  // folders, besides its own
};

// The first row whose folder holds the file counts.
const std::vector<Layer> layers{
    {"platform/windows", {"platform"}},
    {"platform/native", {"platform"}},
    {"platform/odbc", {"platform"}},
    {"platform/xls", {"platform"}},
    {"platform/headless", {"platform"}},
    {"platform", {}},
    {"shared", {"platform"}},
    {"mapping", {"shared", "platform"}},
    {"opening", {"mapping", "shared", "platform"}},
    {"masters", {"mapping", "shared", "platform"}},
    {"component", {"masters", "opening", "mapping", "shared", "platform"}},
    {"samples/company", {"platform/odbc", "platform"}},
};

// Headers that are not the standard library's, and who may include them besides apps and tests.
struct Foreign {
  std::string_view header;
  std::vector<std::string_view> folders;
};
const std::vector<Foreign> foreign{
    {"windows.h", {"component/com", "platform/windows", "platform/odbc"}},
    {"sql", {"platform/odbc"}},
    {"unistd.h", {"platform/native"}},
    {"fcntl.h", {"platform/native"}},
    {"sys/", {"platform/native"}},
};

std::string folderOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return std::string(slash == std::string_view::npos ? "" : path.substr(0, slash));
}

bool isIn(std::string_view path, std::string_view folder) {
  return path.starts_with(folder) && path.size() > folder.size() && path[folder.size()] == '/';
}

std::vector<std::string> includesOf(const fs::path& file) {
  std::vector<std::string> found;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (!line.starts_with("#include ")) continue;
    const std::size_t open = line.find_first_of("<\"");
    const std::size_t close = line.find_last_of(">\"");
    if (open != std::string::npos && close > open) {
      found.push_back(line.substr(open, close - open + 1));
    }
  }
  return found;
}

bool mayIncludeOwn(const Layer& layer, std::string_view header) {
  const std::string folder = folderOf(header);
  if (folder == layer.folder || isIn(header, std::string(layer.folder) + "/com")) return true;
  for (const std::string_view allowed : layer.mayInclude) {
    if (folder == allowed) return true;
  }
  return false;
}

bool mayIncludeForeign(std::string_view file, std::string_view header) {
  for (const Foreign& rule : foreign) {
    if (!header.starts_with(rule.header)) continue;
    for (const std::string_view folder : rule.folders) {
      if (isIn(file, folder)) return true;
    }
    return false;
  }
  return true;
}

bool allowed(const Layer& layer, const std::string& file, const std::string& include) {
  const std::string_view header = std::string_view(include).substr(1, include.size() - 2);
  return include.front() == '"' ? mayIncludeOwn(layer, header) : mayIncludeForeign(file, header);
}

}  // namespace

TEST_CASE("includes go only downwards") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  std::size_t checked = 0;
  for (const Layer& layer : layers) {
    if (!fs::exists(root / layer.folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / layer.folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".h" && extension != ".cpp") continue;
      const std::string file = fs::relative(entry.path(), root).generic_string();
      if (layer.folder == "platform" && folderOf(file) != "platform") continue;
      for (const std::string& include : includesOf(entry.path())) {
        CAPTURE(file);
        CAPTURE(include);
        CHECK(allowed(layer, file, include));
        ++checked;
      }
    }
  }
  CHECK(checked > 100);
}

TEST_CASE("the layer check refuses what it should") {
  const struct {
    const char* folder;
    const char* file;
    const char* include;
  } rows[] = {
      {"platform", "platform/form.cpp", "\"shared/csv_text.h\""},
      {"platform", "platform/form.cpp", "\"platform/odbc/odbc_connection.h\""},
      {"shared", "shared/csv_text.cpp", "\"mapping/csv_table.h\""},
      {"shared", "shared/csv_text.cpp", "\"platform/native/native_files.h\""},
      {"opening", "opening/opening_import.cpp", "\"masters/bank_import.h\""},
      {"mapping", "mapping/csv_table.cpp", "<windows.h>"},
      {"platform/headless", "platform/headless/headless.cpp", "<sys/stat.h>"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.include);
    const auto layer = std::find_if(layers.begin(), layers.end(), [&](const Layer& candidate) {
      return candidate.folder == row.folder;
    });
    REQUIRE(layer != layers.end());
    CHECK_FALSE(allowed(*layer, row.file, row.include));
  }
}
