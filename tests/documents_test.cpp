// What the documents point at is there: files, headings, commands with their options, quoted lines.
#include <doctest/doctest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <regex>
#include <set>

#include "tests/support/documents.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

namespace fs = std::filesystem;

/// As links name it: small letters and digits, a hyphen for each blank.
std::string anchorOf(std::string_view heading) {
  std::string anchor;
  for (const char c : heading) {
    if (c == ' ') anchor += '-';
    if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_') {
      anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  return anchor;
}

bool hasHeading(const fs::path& document, const std::string& anchor) {
  const Lines lines = linesOf(document);
  return std::ranges::any_of(lines, [&](const std::string& line) {
    const std::size_t text = line.find_first_not_of('#');
    return line.starts_with("#") && anchorOf(line.substr(text + 1)) == anchor;
  });
}

/// What stands between the marks, each time.
std::vector<std::string> between(std::string_view text, std::string_view begin, char end) {
  std::vector<std::string> found;
  for (std::size_t at = 0; (at = text.find(begin, at)) != std::string_view::npos;) {
    at += begin.size();
    found.emplace_back(text.substr(at, text.find(end, at) - at));
  }
  return found;
}

/// The commands of the runner, each with all words that its completion offers.
std::map<std::string, std::set<std::string>> commandsWithOptions() {
  RunnerWorld world;
  std::map<std::string, std::set<std::string>> commands;
  std::string name;
  for (const std::string& line : split(world.run({"completion", "bash"}).out, '\n')) {
    if (line.starts_with("    ") && line.ends_with(")")) name = line.substr(4, line.size() - 5);
    for (const std::string& words : between(line, "compgen -W '", '\'')) {
      for (const std::string& word : split(words, ' ')) commands[name].insert(word);
    }
  }
  return commands;
}

/// The options that text names, without what is theirs.
std::vector<std::string> optionsIn(const std::string& text) {
  std::vector<std::string> options;
  for (const std::string& word : split(text, ' ')) {
    const std::size_t start = word.find_first_not_of("[(");
    if (start == std::string::npos || !word.substr(start).starts_with("--")) continue;
    const std::string option = word.substr(start);
    options.push_back(option.substr(0, option.find_first_not_of("-abcdefghijklmnopqrstuvwxyz")));
  }
  return options;
}

/// The calls of the runner in a text, without its name: in code, and as lines of their own.
std::vector<std::string> callsIn(const fs::path& document) {
  std::string flat;
  std::vector<std::string> calls;
  for (const std::string& line : linesOf(document)) {
    for (const std::string_view start : {"    opnimp ", "$ opnimp ", "    ./run "}) {
      if (line.starts_with(start)) calls.push_back(line.substr(start.size()));
    }
    flat += line + ' ';
  }
  for (const std::string_view start : {"`opnimp ", "`./run "}) {
    std::ranges::move(between(flat, start, '`'), std::back_inserter(calls));
  }
  return calls;
}

TEST_CASE("documents: links lead to files and headings, and the index has all of them") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  const std::string index = textOf(root / "docs/README.md");
  std::size_t checked = 0;
  for (const fs::path& document : allDocuments()) {
    CAPTURE(document);
    if (document.parent_path() == root / "docs" && document.filename() != "README.md") {
      CHECK(contains(index, "(" + document.filename().string() + ")"));
    }
    for (const std::string& link : between(textOf(document), "](", ')')) {
      if (link.starts_with("http")) continue;
      CAPTURE(link);
      const std::size_t hash = std::min(link.find('#'), link.size());
      const fs::path target = hash == 0 ? document : document.parent_path() / link.substr(0, hash);
      REQUIRE(fs::exists(target));
      CHECK((hash == link.size() || hasHeading(target, link.substr(hash + 1))));
      ++checked;
    }
  }
  CHECK(checked > 100);
}

TEST_CASE("documents: commands and options are there") {
  auto commands = commandsWithOptions();
  std::set<std::string> all{"--help", "--version"};
  for (const auto& [name, words] : commands) all.insert(words.begin(), words.end());
  commands["--version"] = commands["--help"] = commands["help"] = all;
  std::size_t checked = 0;
  for (const fs::path& document : allDocuments()) {
    CAPTURE(document);
    for (const std::string& call : callsIn(document)) {
      CAPTURE(call);
      const std::string name = call.substr(0, call.find(' '));
      if (name.empty() || std::isupper(static_cast<unsigned char>(name.front())) != 0) continue;
      REQUIRE(commands.contains(name));
      for (const std::string& option : optionsIn(call)) {
        CAPTURE(option);
        CHECK(commands[name].contains(option));
      }
      ++checked;
    }
    // Options by themselves are the runner's, but where documents are about other programs.
    if (document.filename() == "contributing.md" || !contains(document.string(), "/docs/"))
      continue;
    for (const std::string& code : between(textOf(document), "`--", '`')) {
      const std::string option = optionsIn("--" + code).front();
      CAPTURE(option);
      CHECK(all.contains(option));
    }
  }
  CHECK(checked > 60);
}

TEST_CASE("documents: the host's guide quotes its files") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  const std::string script = textOf(root / "docs/hosts/host.vbs");
  const std::string interfaces = textOf(root / "component/com/Velk_OpnImp.idl") +
                                 textOf(root / "platform/windows/host_service.idl");
  std::size_t quoted = 0;
  bool isScript = false;
  for (const std::string& line : linesOf(root / "docs/host-guide.md")) {
    CAPTURE(line);
    if (line.starts_with("```")) {
      isScript = line == "```vbs";
    } else if (isScript) {
      CHECK(contains(script, line + "\n"));
      ++quoted;
    }
    // A row of the identifiers.
    constexpr std::size_t length = 36;
    const std::string cell = line.substr(line.rfind("| ", line.size() - 3) + 2, length);
    if (cell.size() != length || cell[8] != '-' || cell[23] != '-') continue;
    CHECK(contains(interfaces, cell));
    ++quoted;
  }
  CHECK(quoted == 10);
}

TEST_CASE("documents: threats.md names tests that there are") {
  const fs::path root = OPNIMP_SOURCE_DIR;
  std::string tests;
  for (const auto& entry : fs::recursive_directory_iterator(root / "tests")) {
    if (entry.path().extension() == ".cpp") tests += textOf(entry.path());
  }
  const std::string text = textOf(root / "docs/threats.md");
  const std::regex named("\"([^\"]+)\"|`(tests/fuzz/[^`]+|scripts/[^`]+)`");
  for (auto name = std::sregex_iterator(text.begin(), text.end(), named);
       name != std::sregex_iterator(); ++name) {
    CAPTURE(name->str());
    const bool isTest = (*name)[1].matched;
    CHECK((isTest ? contains(tests, name->str() + ") {") : fs::exists(root / (*name)[2].str())));
  }
  // A claim that something cannot be done has its test beside it.
  CHECK_FALSE(std::regex_search(text, std::regex("\\| cannot[^|]*\\| *\\|")));
}

}  // namespace
}  // namespace velk
