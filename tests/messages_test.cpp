// Every message of the screens and every refusal of a file has its row in a guide, and the reverse.
#include <doctest/doctest.h>

#include <algorithm>
#include <cctype>

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

/// Statements for the database, filters of file dialogs and fonts are for no reader.
bool isForReaders(const std::string& text) {
  const std::string start = plain(text);
  return !start.starts_with("select ") && !start.starts_with("if exists") &&
         !contains(start, "ctlpos") && !contains(start, "|*") && start != "ms sans serif";
}

struct Scope {
  const char* place;  ///< a folder with all below it, or a file
  int fewestWords;    ///< of a literal that has to be in the guide
  bool isSentence;    ///< only those that begin with a capital letter
};

struct Guide {
  std::string document;
  std::vector<Scope> sources;
};

/// Their tables have a message in the first cell of each row, as code; "..." is what differs.
const Guide guides[] = {
    {"users-guide.md",
     {{"shared", 2, false},
      {"mapping", 2, false},
      {"opening", 2, false},
      {"masters", 2, false},
      {"component", 2, false},
      {"platform/spreadsheet", 4, true},
      {"platform/windows", 4, true},
      {"base/errors.cpp", 99, false}}},
    {"runner-guide.md",
     {{"apps/opnimp/convert", 5, false},
      {"apps/opnimp/records/csv_records.cpp", 5, false},
      {"apps/opnimp/records/workbook_records.cpp", 5, false},
      {"apps/opnimp/journal/repetition.cpp", 5, false},
      {"apps/opnimp/run/refusals.cpp", 5, false},
      {"apps/opnimp/run/run_support.cpp", 99, false}}},
};

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

/// A text is known if it stands in a message or, as a title or a caption of few words, anywhere.
void checkLiterals(const Guide& guide, const Lines& messages, std::string& code) {
  std::string rows;
  for (const std::string& message : messages) rows += plain(message) + '\n';
  const std::string all = plain(textOf(fs::path(OPNIMP_SOURCE_DIR) / "docs" / guide.document));
  for (const Scope& scope : guide.sources) {
    for (const fs::path& source : sourcesIn(scope.place)) {
      CAPTURE(source);
      for (const std::string& literal : literalsOf(source)) {
        const std::string text = plain(literal);
        code += text + '\n';
        const auto words = std::ranges::count(text, ' ') + 1;
        const bool isSentence = std::isupper(static_cast<unsigned char>(literal[0])) != 0;
        if (words < scope.fewestWords || (scope.isSentence && !isSentence)) continue;
        if (!isForReaders(literal)) continue;
        CAPTURE(literal);
        CHECK(contains(words >= 4 ? rows : all, text));
      }
    }
  }
}

TEST_CASE("messages: the guides have those of the code, and no others") {
  for (const Guide& guide : guides) {
    CAPTURE(guide.document);
    const Lines messages = messagesOf(fs::path(OPNIMP_SOURCE_DIR) / "docs" / guide.document);
    CHECK(messages.size() > 40);
    std::string code;
    checkLiterals(guide, messages, code);
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
