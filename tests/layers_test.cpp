// What ARCHITECTURE.md says is so: includes follow its drawing, no two files of a room include each
// other, each room includes the headers of no other systems and libraries than its own, and the
// steps of its walks exist.
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

/// The headers that a room may include besides the standard library's, by how their names begin.
const std::map<std::string, Names> foreignHeaders{
    {"platform/native",
     {"fcntl.h", "linux/", "poll.h", "pwd.h", "spawn.h", "sys/", "unicode/", "unistd.h"}},
    {"platform/native/windows", {"windows.h", "aclapi.h", "ole2.h", "sddl.h"}},
    {"platform/odbc", {"sql", "windows.h"}},
    {"platform/windows",
     {"windows.h", "ole2.h", "olectl.h", "ocidl.h", "cderr.h", "commdlg.h", "shellapi.h",
      "shobjidl.h", "wrl/client.h", "xmmintrin.h", "ado_com.h", "host_service_com.h"}},
    {"platform/windows/forms", {"windows.h", "commctrl.h", "uxtheme.h", "vssym32.h"}},
    {"platform/spreadsheet/zipped", {"expat.h", "zlib.h"}},
    {"mapping", {"emmintrin.h"}},
    {"component/com",
     {"windows.h", "ole2.h", "olectl.h", "initguid.h", "pthread.h", "ado_com.h",
      "Velk_OpnImp_com.h"}},
    {"apps/host",
     {"windows.h", "commctrl.h", "ole2.h", "olectl.h", "ocidl.h", "shellapi.h", "ado_com.h",
      "host_service_com.h", "Velk_OpnImp_com.h", "unused_members.h", "CLI/"}},
    {"apps/opnimp/cli", {"CLI/"}},
    {"apps/opnimp/journal", {"cpuid.h", "immintrin.h"}},
    {"apps/opnimp/report", {"nlohmann/"}},
    {"apps/opnimp", {"fcntl.h", "io.h", "shellapi.h", "sys/resource.h", "unistd.h", "windows.h"}},
};

struct Room {
  std::string name;
  std::vector<std::string> uses;  // each with all that it uses itself
};

/// The rooms and arrows of the drawing in ARCHITECTURE.md: lines such as `a["room"] -->
/// b["other"]`, where a room that was named before goes by its short name.
std::vector<Room> drawnRooms() {
  std::ifstream in(fs::path(OPNIMP_SOURCE_DIR) / "ARCHITECTURE.md");
  std::map<std::string, std::size_t> known;
  std::vector<Room> drawn;
  const auto roomAt = [&](const std::string& node) -> std::size_t {
    const std::size_t quote = node.find("[\"");
    const auto [found, isNew] = known.try_emplace(node.substr(0, quote), drawn.size());
    if (isNew) drawn.push_back({node.substr(quote + 2, node.size() - quote - 4), {}});
    return found->second;
  };
  for (std::string line; std::getline(in, line);) {
    const std::size_t arrow = line.find(" --> ");
    if (arrow == std::string::npos) continue;
    const std::size_t from = roomAt(line.substr(2, arrow - 2));
    const std::size_t to = roomAt(line.substr(arrow + 5));
    drawn[from].uses.push_back(drawn[to].name);
  }
  return drawn;
}

const std::vector<Room> rooms = drawnRooms();

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
  return &room == &other || std::any_of(room.uses.begin(), room.uses.end(), [&](const auto& name) {
    return mayUse(*roomOf(name + "/"), other);
  });
}

/// `include` with its quotes or brackets.
bool allowed(const Room& room, std::string_view include) {
  const std::string_view name = include.substr(1, include.size() - 2);
  if (include.front() == '"') return roomOf(name) != nullptr && mayUse(room, *roomOf(name));
  if (name.find('.') == std::string_view::npos) return true;  // the standard library's
  const auto foreign = foreignHeaders.find(room.name);
  return foreign != foreignHeaders.end() &&
         std::ranges::any_of(foreign->second, [&](auto start) { return name.starts_with(start); });
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

/// The files that lead back to themselves, with a blank after each.
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
  std::set<std::pair<std::string, std::string>> arrowsUsed;
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
        if (include.front() == '"') arrowsUsed.insert({room->name, roomOf(to)->name});
      }
    }
  }
  CHECK(inCircles(graph) == "");
  for (const Room& room : rooms) {
    for (const std::string& used : room.uses) {
      CAPTURE(room.name);
      CAPTURE(used);
      CHECK(arrowsUsed.contains({room.name, used}));
    }
  }
  CHECK(checked > 1000);
}

TEST_CASE("each step of the walks in ARCHITECTURE.md exists") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  std::ifstream in(root / "ARCHITECTURE.md");
  std::vector<int> walks;  // their numbers of steps
  for (std::string line; std::getline(in, line);) {
    const std::size_t file = line.find(". `");
    if (file == std::string::npos || file > 2) continue;
    CAPTURE(line);
    const int step = std::stoi(line);
    if (step == 1) walks.push_back(0);
    CHECK(step == ++walks.back());
    const std::size_t fileEnd = line.find('`', file + 3);
    const std::size_t name = line.find('`', fileEnd + 1) + 1;
    std::ifstream source(root / line.substr(file + 3, fileEnd - file - 3));
    const std::string text(std::istreambuf_iterator<char>(source), {});
    CHECK(text.find(line.substr(name, line.find('`', name) - name)) != std::string::npos);
  }
  REQUIRE(walks.size() == 2);
  CHECK(walks[0] <= 15);
  CHECK(walks[1] <= 9);
}

}  // namespace
