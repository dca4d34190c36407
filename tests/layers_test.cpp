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
using Folders = std::vector<std::string_view>;

const Folders checkedFolders{"base",     "ui",      "platform",  "shared",          "mapping",
                             "opening",  "masters", "component", "samples/company", "apps/database",
                             "apps/host"};

// How headers begin, and the folders whose files may include them. The first row that fits counts;
// of the headers in no row, the standard library's may be included by all.
const std::pair<std::string_view, Folders> rules[] = {
    {"platform/windows/", {"platform/windows", "component/com", "apps/host"}},
    {"platform/native/", {"platform/native"}},
    {"platform/odbc/", {"platform/odbc", "samples/company", "apps/database", "apps/host"}},
    {"platform/spreadsheet/xls/", {"platform/spreadsheet/xls", "component/com", "apps/host"}},
    {"platform/spreadsheet/", {"platform/spreadsheet", "platform/windows"}},
    {"platform/headless/", {"platform/headless"}},
    {"base/", checkedFolders},
    {"ui/",
     {"ui", "platform", "shared", "mapping", "opening", "masters", "component", "apps/host"}},
    {"platform/desktop.h", checkedFolders},  // of which the file dialog asks
    {"platform/",
     {"platform", "shared", "mapping", "opening", "masters", "component", "samples/company",
      "apps/host"}},
    {"shared/", {"shared", "mapping", "opening", "masters", "component"}},
    {"mapping/", {"mapping", "opening", "masters", "component"}},
    {"opening/", {"opening", "component"}},
    {"masters/", {"masters", "component"}},
    {"component/com/", {"component/com"}},
    {"component/", {"component"}},
    {"samples/company/", {"samples/company", "apps/database", "apps/host"}},
    {"apps/database/", {"apps/database", "apps/host"}},
    {"apps/", {"apps/host"}},
    {"windows.h", {"component/com", "platform/windows", "platform/odbc", "apps/host"}},
    {"ole2.h", {"component/com", "platform/windows", "apps/host"}},
    {"olectl.h", {"component/com", "platform/windows", "apps/host"}},
    {"shellapi.h", {"platform/windows", "apps/host"}},
    {"initguid.h", {"component/com"}},
    {"wrl/", {"platform/windows"}},
    {"xmmintrin.h", {"platform/windows"}},
    {"ado_com.h", {"component/com", "platform/windows", "apps/host"}},
    {"host_service_com.h", {"platform/windows", "apps/host"}},
    {"Velk_OpnImp_com.h", {"component/com", "apps/host"}},
    {"sql", {"platform/odbc"}},
    {"unistd.h", {"platform/native"}},
    {"fcntl.h", {"platform/native"}},
    {"sys/", {"platform/native"}},
};

/// `include` with its quotes or brackets.
bool allowed(std::string_view file, std::string_view include) {
  for (const auto& [start, folders] : rules) {
    if (!include.substr(1).starts_with(start)) continue;
    return std::any_of(folders.begin(), folders.end(), [&](std::string_view folder) {
      return file.starts_with(folder) && file.substr(folder.size()).starts_with('/');
    });
  }
  return include.front() == '<';
}

TEST_CASE("includes go only downwards") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  int checked = 0;
  for (const std::string_view folder : checkedFolders) {
    if (!fs::exists(root / folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".h" && extension != ".cpp") continue;
      const std::string file = fs::relative(entry.path(), root).generic_string();
      std::ifstream in(entry.path());
      for (std::string line; std::getline(in, line);) {
        if (!line.starts_with("#include ")) continue;
        CAPTURE(file);
        CAPTURE(line);
        CHECK(allowed(file, std::string_view(line).substr(9)));
        ++checked;
      }
    }
  }
  CHECK(checked > 100);
}

TEST_CASE("the layer check refuses what it should") {
  const std::pair<const char*, const char*> rows[] = {
      {"ui/form.cpp", "\"shared/csv_text.h\""},
      {"shared/csv_text.cpp", "\"mapping/csv_table.h\""},
      {"mapping/csv_table.cpp", "<windows.h>"},
      {"platform/headless/headless.cpp", "<sys/stat.h>"}};
  for (const auto& row : rows) {
    CAPTURE(row.second);
    CHECK_FALSE(allowed(row.first, row.second));
  }
}

}  // namespace
