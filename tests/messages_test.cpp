// Every message of the screens and of the runner has its row in a guide, and the reverse.
#include <doctest/doctest.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "apps/opnimp/cli/profile.h"
#include "apps/opnimp/warnings/warning_texts.h"
#include "base/errors.h"
#include "base/text.h"
#include "tests/support/documents.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

namespace fs = std::filesystem;

/// Small letters, one blank where there are several, nothing but letters and digits at both ends.
std::string plain(std::string_view text) {
  std::string plainText;
  for (const char c : text) {
    if (c == '&') continue;  // it marks a button's letter
    const bool isBlank = std::isspace(static_cast<unsigned char>(c)) != 0;
    if (isBlank && plainText.ends_with(' ')) continue;
    plainText += isBlank ? ' ' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  const auto isWord = [](unsigned char c) { return std::isalnum(c) != 0; };
  const auto first = std::ranges::find_if(plainText, isWord);
  const auto last = std::find_if(plainText.rbegin(), plainText.rend(), isWord).base();
  return first < last ? std::string(first, last) : std::string();
}

/// The text literals of a source file, those that the compiler joins as one.
Lines literalsOf(const fs::path& source) {
  const std::string code = textOf(source);
  Lines literals;
  bool joins = false;
  for (std::size_t at = 0; at < code.size(); ++at) {
    const bool isComment = code.compare(at, 2, "//") == 0;
    if (isComment || code.compare(at, 8, "#include") == 0) {
      at = std::min(code.find('\n', at), code.size());
    } else if (code[at] == '\'' && code.find('\'', at + 1) <= at + 3) {
      at = code.find('\'', at + (code[at + 1] == '\\' ? 3 : 2));
      joins = false;
    } else if (code.compare(at, 3, "R\"(") == 0) {
      const std::size_t end = code.find(")\"", at);
      literals.push_back(code.substr(at + 3, end - at - 3));
      at = end + 1;
    } else if (code[at] == '"') {
      if (!joins) literals.emplace_back();
      while (++at < code.size() && code[at] != '"') {
        if (code[at] != '\\') {
          literals.back() += code[at];
        } else if (const char escaped = code[++at]; true) {
          literals.back() += escaped == 'n' || escaped == 'r' ? ' ' : escaped;
        }
      }
      joins = true;
    } else if (std::isspace(static_cast<unsigned char>(code[at])) == 0) {
      joins = false;
    }
  }
  return literals;
}

struct Scope {
  const char* place;  ///< a folder with all below it, or a file
  int fewestWords;    ///< of a literal that has to be in a guide
  bool isSentence;    ///< only those that begin with a capital letter, and not with several
};

const Scope scopes[] = {
    {"shared", 2, false},           {"mapping", 2, false},      {"opening", 2, false},
    {"masters", 2, false},          {"component", 2, false},    {"platform/spreadsheet", 4, true},
    {"platform/windows", 4, true},  {"platform/odbc", 4, true}, {"platform/native", 4, false},
    {"base/errors.cpp", 99, false}, {"apps/opnimp", 4, false}};

/// What is no message: literals that begin so, in a source with that in its path.
struct Exception {
  const char* source;
  const char* beginning;
  const char* reason;
};

const Exception exceptions[] = {
    {"", "select ", "a statement"},
    {"", "if exists", "a statement"},
    {"", "ms sans serif", "a font"},
    {"cli/command_pages", "", "man page and completion, which contain all that help says"},
    {"cli/kind_fields", "", "what `kinds` and `template` show"},
    {"cli/line_colors", "", "beginnings of lines that stand elsewhere"},
    {"records/title_synonyms", "", "titles of columns"},
    {"report/kinds_report", "", "what `kinds` shows"},
    {"", "what it may be", "a caption there and in templates"},
    {"audit/outcome", "skipped: not a number", "outcomes have a table of their own"},
    {"report/html_", "", "captions of the page, and its style"},
    {"report/metrics", "", "docs/monitoring.md has each by its name"},
    {"run/connection_advice", "does not match host name", "words of a driver"},
    {"report/conversion_report", "value has a comma", "its plural has a row"},
    {"run/run_support", "the file to import", "a row says which files those are"},
    {"run/company_needs", "int integer", "types of columns"},
    {"run/company_needs", "double float", "types of columns"},
    {"run/company_needs", "date datetime", "types of columns"},
    {"warnings/warning_texts", "", "docs/warnings.md, by the test below"}};

bool isForReaders(const std::string& source, const std::string& text) {
  if (contains(text, "ctlpos") || contains(text, "|*")) return false;
  return std::ranges::none_of(exceptions, [&](const Exception& each) {
    return contains(source, each.source) && text.starts_with(each.beginning);
  });
}

/// What help and profiles explain.
std::string explanations() {
  RunnerWorld world;
  Profile profile{"vendor", {"--replace"}};
  for (const char* key : {"--map", "--encoding", "--sheet", "--delimiter", "--skip-lines",
                          "--header-line", "--date-order", "--decimal", "--accept"}) {
    profile.options.push_back(std::string(key) + "=x");
  }
  std::string text = profileText(profile);
  for (const char* command :
       {"import", "preview", "convert", "export", "check-database", "runs", "report", "reversal",
        "rejects", "kinds", "template", "split", "demo-database", "completion"}) {
    text += world.run({"help", command}).out;
  }
  return plain(text + world.run({"help"}).out);
}

std::vector<fs::path> sourcesIn(const char* place) {
  const fs::path path = fs::path(OPNIMP_SOURCE_DIR) / place;
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    const std::string extension = entry.path().extension().string();
    if (extension == ".cpp" || extension == ".h") files.push_back(entry.path());
  }
  return files;
}

/// The messages of a guide's tables.
Lines messagesOf(const fs::path& guide) {
  Lines messages;
  for (const std::string& line : linesOf(guide)) {
    if (!line.starts_with("| `")) continue;
    const bool isDouble = line.starts_with("| ``");  // it has code in it
    const std::size_t start = isDouble ? 4 : 3;
    messages.push_back(line.substr(start, line.find(isDouble ? "``" : "`", start) - start));
  }
  return messages;
}

/// Their tables have a message in the first cell of each row, as code; "..." is what differs.
constexpr const char* guides[] = {"users-guide.md", "runner-guide.md", "messages.md"};

/// Answers all literals of the code. A text is known if it stands in a message or, as a title or a
/// caption of few words, anywhere.
std::string checkLiterals(const std::string& rows, const std::string& all) {
  const std::string explained = explanations();
  std::string code;
  for (const Scope& scope : scopes) {
    for (const fs::path& source : sourcesIn(scope.place)) {
      CAPTURE(source);
      for (const std::string& literal : literalsOf(source)) {
        const std::string text = plain(literal);
        code += text + '\n';
        const auto words = std::ranges::count(text, ' ') + 1;
        const bool isSentence = std::isupper(static_cast<unsigned char>(literal[0])) != 0 &&
                                std::isupper(static_cast<unsigned char>(literal[1])) == 0;
        if (words < scope.fewestWords || (scope.isSentence && !isSentence)) continue;
        if (!isForReaders(source.string(), text) || contains(explained, text)) continue;
        CAPTURE(literal);
        CHECK(contains(words >= 4 ? rows : all, text));
      }
    }
  }
  return code;
}

TEST_CASE("messages: the guides have those of the code, and no others, each once") {
  std::string all;
  std::string rows;
  std::set<std::string> messages;
  for (const char* guide : guides) {
    const fs::path path = fs::path(OPNIMP_SOURCE_DIR) / "docs" / guide;
    all += plain(textOf(path)) + '\n';
    for (const std::string& message : messagesOf(path)) {
      CAPTURE(message);
      CHECK(messages.insert(message).second);
      rows += plain(message) + '\n';
    }
  }
  CHECK(messages.size() > 300);
  const std::string code = checkLiterals(rows, all);
  for (std::string message : messages) {
    CAPTURE(message);
    for (std::size_t at = 0; (at = message.find("...")) != std::string::npos;) {
      message.replace(at, 3, "\n");
    }
    for (const std::string& part : split(message, '\n')) {
      const std::string text = plain(part);
      CAPTURE(text);
      CHECK(contains(code, text));
    }
  }
}

TEST_CASE("messages: the host's guide has every error with its number") {
  const std::string guide = textOf(OPNIMP_SOURCE_DIR "/docs/host-guide.md");
  std::size_t rows = 0;
  for (const std::string& line : split(guide, '\n')) {
    const int number = line.starts_with("| ") ? std::atoi(line.c_str() + 2) : 0;
    if (number == 0 || std::ranges::count(line, '|') != 3) continue;
    CAPTURE(line);
    ++rows;
    CHECK(contains(line, "`" + RuntimeError(static_cast<ErrorNumber>(number)).description() + "`"));
  }
  for (const std::string& text : literalsOf(OPNIMP_SOURCE_DIR "/base/errors.cpp")) {
    CAPTURE(text);
    CHECK(contains(guide, text));
  }
  CHECK(rows > 30);
}

TEST_CASE("messages: docs/warnings.md has a row for each warning, and no other") {
  const std::string text = textOf(OPNIMP_SOURCE_DIR "/docs/warnings.md");
  for (const WarningText& warning : allWarnings()) {
    CAPTURE(warning.code);
    const std::string weight = warning.harmful ? "harmful" : "note";
    CHECK(contains(text, "| `" + std::string(warning.code) + "` | " + weight + " | " +
                             std::string(warning.text) + " |\n"));
  }
  CHECK(messagesOf(OPNIMP_SOURCE_DIR "/docs/warnings.md").size() == allWarnings().size());
}

}  // namespace
}  // namespace velk
