// Includes go downwards only, no two files of a room include each other, and each room includes the
// headers of no other systems and libraries than its own.
#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string_view>;

struct Room {
  std::string_view name;
  Names uses;     // the rooms below, each with all that it uses itself
  Names headers;  // besides the standard library's: how their names begin
};

const Room rooms[] = {
    {"base", {}, {}},
    {"ui", {"base"}, {}},
    {"ui/headless", {"ui"}, {}},
    {"platform", {"ui"}, {}},
    {"platform/headless", {"platform"}, {}},
    {"platform/native", {"platform"}, {"fcntl.h", "sys/", "unistd.h"}},
    {"platform/odbc", {"platform"}, {"sql", "windows.h"}},
    {"platform/spreadsheet", {"platform"}, {}},
    {"platform/spreadsheet/xls", {"platform/spreadsheet"}, {}},
    {"platform/windows",
     {"platform/spreadsheet"},
     {"windows.h", "ole2.h", "olectl.h", "ocidl.h", "cderr.h", "commdlg.h", "shellapi.h",
      "wrl/client.h", "xmmintrin.h", "ado_com.h", "host_service_com.h"}},
    {"platform/windows/forms", {"platform/windows"}, {"windows.h", "commctrl.h"}},
    {"shared", {"platform"}, {}},
    {"mapping", {"shared"}, {"emmintrin.h"}},
    {"opening", {"mapping"}, {}},
    {"masters", {"mapping"}, {}},
    {"component", {"opening", "masters"}, {}},
    {"component/com",
     {"component", "platform/spreadsheet/xls", "platform/windows/forms"},
     {"windows.h", "ole2.h", "olectl.h", "initguid.h", "ado_com.h", "Velk_OpnImp_com.h"}},
    {"samples", {"masters", "platform/native", "platform/spreadsheet/xls"}, {}},
    {"samples/company", {"platform/odbc"}, {}},
    {"apps/database", {"samples/company"}, {}},
    {"apps/host",
     {"apps/database", "platform/windows", "platform/spreadsheet/xls"},
     {"windows.h", "commctrl.h", "ole2.h", "olectl.h", "ocidl.h", "shellapi.h", "ado_com.h",
      "host_service_com.h", "Velk_OpnImp_com.h", "unused_members.h", "CLI/"}},
    {"apps/opnimp/cli", {"component"}, {"CLI/"}},
    {"apps/opnimp/records", {"apps/opnimp/cli", "platform/spreadsheet/xls"}, {}},
    {"apps/opnimp/warnings", {"apps/opnimp/records"}, {}},
    {"apps/opnimp/audit", {"apps/opnimp/records", "platform/headless"}, {}},
    {"apps/opnimp/report",
     {"apps/opnimp/audit", "apps/opnimp/warnings", "platform/native"},
     {"nlohmann/"}},
    {"apps/opnimp/run", {"apps/opnimp/report", "apps/database", "ui/headless"}, {}},
    {"apps/opnimp", {"apps/opnimp/run"}, {"unistd.h"}},
};

/// The deepest one that contains the file; null outside of all.
const Room* roomOf(std::string_view file) {
  const Room* found = nullptr;
  for (const Room& room : rooms) {
    const bool contains = file.starts_with(room.name) && file.substr(room.name.size())[0] == '/';
    if (contains && (found == nullptr || room.name.size() > found->name.size())) found = &room;
  }
  return found;
}

bool mayUse(const Room& room, const Room& other) {
  return &room == &other || std::any_of(room.uses.begin(), room.uses.end(), [&](auto name) {
    return mayUse(*roomOf(std::string(name) + "/"), other);
  });
}

/// `include` with its quotes or brackets.
bool allowed(const Room& room, std::string_view include) {
  const std::string_view name = include.substr(1, include.size() - 2);
  if (include.front() == '"') return roomOf(name) != nullptr && mayUse(room, *roomOf(name));
  return name.find('.') == std::string_view::npos ||
         std::any_of(room.headers.begin(), room.headers.end(),
                     [&](std::string_view header) { return name.starts_with(header); });
}

/// For each file, a header and its source being one, those that it includes.
using Graph = std::map<std::string, std::set<std::string>>;

void reach(const Graph& graph, const std::string& from, std::set<std::string>& reached) {
  const auto included = graph.find(from);
  if (included == graph.end()) return;
  for (const std::string& file : included->second) {
    if (reached.insert(file).second) reach(graph, file, reached);
  }
}

/// The files that lead back to themselves, with a blank behind each.
std::string inCircles(const Graph& graph) {
  std::string found;
  for (const auto& [file, included] : graph) {
    std::set<std::string> reached;
    reach(graph, file, reached);
    if (reached.contains(file)) found += file + " ";
  }
  return found;
}

std::string stemOf(const std::string& file) {
  return file.substr(0, file.rfind('.'));
}

TEST_CASE("includes go only downwards, and never in a circle") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  Graph graph;
  int checked = 0;
  for (const char* top : {"base", "ui", "platform", "shared", "mapping", "opening", "masters",
                          "component", "samples", "apps"}) {
    for (const auto& entry : fs::recursive_directory_iterator(root / top)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".h" && extension != ".cpp") continue;
      const std::string file = fs::relative(entry.path(), root).generic_string();
      CAPTURE(file);
      const Room* room = roomOf(file);
      REQUIRE(room != nullptr);
      std::ifstream in(entry.path());
      for (std::string line; std::getline(in, line);) {
        if (!line.starts_with("#include ")) continue;
        const std::string include = line.substr(9);
        const std::string from = stemOf(file);
        const std::string to = stemOf(include.substr(1));
        ++checked;
        CAPTURE(include);
        CHECK(allowed(*room, include));
        if (from != to && roomOf(to) == room) graph[from].insert(to);
      }
    }
  }
  CHECK(inCircles(graph) == "");
  CHECK(checked > 1000);
}

TEST_CASE("the layer check refuses what it should") {
  const std::pair<const char*, const char*> rows[] = {
      {"ui/form.cpp", "\"platform/desktop.h\""},
      {"shared/csv_text.cpp", "\"mapping/csv_table.h\""},
      {"mapping/csv_table.cpp", "<windows.h>"},
      {"platform/windows/variants.cpp", "\"platform/windows/forms/scale.h\""},
      {"platform/headless/headless_desktop.cpp", "<sys/stat.h>"},
      {"apps/opnimp/warnings/warnings.cpp", "\"apps/opnimp/audit/account.h\""},
      {"masters/vendor_import.cpp", "\"tests/support/checks.h\""}};
  for (const auto& row : rows) {
    CAPTURE(row.second);
    CHECK_FALSE(allowed(*roomOf(row.first), row.second));
  }
  CHECK(inCircles({{"a", {"b"}}, {"b", {"c"}}, {"c", {"a"}}, {"d", {"a"}}}) == "a b c ");
}

}  // namespace
