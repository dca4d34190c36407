#include <random>

#include "mapping/file_survey.h"
#include "tests/support/checks.h"
#include "tests/support/memory_files.h"
#include "tests/support/slow_table.h"

namespace velk {
namespace {

using namespace std::string_literals;

TEST_CASE("random texts give what the slow way gives") {
  const Texts pieces{",", ",", "\"", "\"", "\r\n", "\r\n", "\r",       "\n",   "\0"s,
                     "a", "b", " ",  "-",  "é",    "€",    "12345678", "\"\"", "a longer text"};
  std::mt19937 random(20080331);  // NOLINT: the same texts in every run
  for (int i = 0; i < 8000; ++i) {
    std::string text;
    for (auto n = random() % 40 + 1; n > 0; --n) text += pieces[random() % pieces.size()];
    CAPTURE(text);
    REQUIRE((quickly(text) == slowly(text)));
  }
}

TEST_CASE("a file is counted as it is split, wherever its pieces end") {
  MemoryFiles files;
  for (const std::string start : {"", "\r\n", "t\r\n"}) {
    for (std::size_t length = 65'525; length < 65'540; ++length) {
      CAPTURE(length);
      const std::string line = start + std::string(length, 'x') + "\r";
      for (const char* const end : {"", "\r", "\n", "\n\r\n", "\n\n\r\na", "\r\n\r\na\r\n\r"}) {
        files.contents["in.csv"] = line + end;
        const FileSurvey found = surveyFile(files, "in.csv");
        const FileTable table = readCsvTable(line + end, [](const RuntimeError&) {});
        CHECK(found.nonEmptyLines == static_cast<std::int64_t>(table.nonEmptyLines));
        CHECK(found.nonEmptyLines - (found.titlesEmpty ? 0 : 1) ==
              static_cast<std::int64_t>(table.rows));
      }
    }
  }
  CHECK_FALSE(surveyIfLong(files, "in.csv"));
}

TEST_CASE("texts that are empty or ask for too much memory are refused") {
  const auto errorFor = [](const std::string& text) {
    return errorOf([&] { readCsvTable(text, [](const RuntimeError&) {}); });
  };
  const std::string widest(maxColumns - 1, ',');
  CHECK(errorFor("") == 9);
  CHECK(errorFor(widest) == 0);
  CHECK(errorFor(widest + ",") == 7);
  CHECK(errorFor(std::string(maxColumns, '\0')) == 7);
  std::string shortLines = widest;
  for (std::size_t i = 0; i <= maxCells / maxColumns; ++i) shortLines += "\r\n1";
  CHECK(errorFor(shortLines) == 7);
}

}  // namespace
}  // namespace velk
