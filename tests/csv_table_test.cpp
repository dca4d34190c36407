// Comma-separated texts: lines, fields, tables.
#include <random>

#include "mapping/file_survey.h"
#include "shared/csv_text.h"
#include "tests/support/slow_table.h"
#include "tests/support/test_world.h"

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

TEST_CASE("fields of a line") {
  const struct {
    std::string line;
    Texts kept, dropped;
  } rows[] = {{"", {}, {}},
              {",", {"", ""}, {"", ""}},
              {" a , é", {" a ", " é"}, {" a ", " é"}},
              {R"(a,"b,c",d)", {"a", R"("b,c")", "d"}, {"a", R"("bc")", "d"}},
              {R"(a"b,c"d,e)", {R"(a"b,c"d)", "e"}, {R"(a"bc"d)", "e"}},
              {R"("a""b",c)", {R"("a""b")", "c"}, {R"("a""b")", "c"}},
              {R"(a,"b,c,)", {"a", R"("b,c,)"}, {"a", R"("bc)"}},
              {"\"a\0,b\",c"s, {"\"a", ",b\"", "c"}, {"\"a", "b\"", "c"}},
              {"\0"s, {"", ""}, {"", ""}}};
  TestWorld world;
  for (const auto& row : rows) {
    CAPTURE(row.line);
    CHECK(splitLine(row.line, QuotedComma::Keep) == row.kept);
    CHECK(world.module.ParseCsvLine(row.line) == row.dropped);
  }
  CHECK(world.log().empty());
}

TEST_CASE("fields without their quotes") {
  const std::pair<const char*, const char*> rows[] = {
      {"", ""},           {R"(abc")", R"(abc")"},  {R"( "a")", R"( "a")"},
      {R"("abc)", "ab"},  {R"("abcé)", "abc"},     {R"("é)", ""},
      {R"("a€")", "a€"},  {R"("a""b")", R"(a"b)"}, {R"("a"b")", R"(a"b)"},
      {R"("a"")", "a\""}, {R"("")", ""},           {R"(""")", "\""},
      {R"("""")", "\""},  {R"(""""")", R"("")"}};
  TestWorld world;
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK(world.module.UnquoteField(row.first) == row.second);
  }
  CHECK(world.log().empty());
  CHECK(world.module.UnquoteField("\"").empty());
  CHECK(world.log() == "(5): Invalid procedure call or argument\n");
}

TEST_CASE("the text of a file that can and of files that can't be read") {
  using Call = MemoryFiles::Call;
  for (const Call failing : {Call::None, Call::OpenInput, Call::Read}) {
    CAPTURE(static_cast<int>(failing));
    TestWorld world;
    world.files.contents["C:\\in.csv"] = "a,\xE9\r\n\"";
    world.files.failing = failing;
    const bool good = failing == Call::None;
    const std::string text = world.module.ReadFileText("C:\\in.csv");
    CHECK(text == (good ? "a,é\r\n\"" : ""));
    CHECK(world.log() == (good ? "" : "Error in Opening the file C:\\in.csv\n"));
    const Texts told{"host 0: Check The Error Log " + world.logPath()};
    CHECK(world.messages == (good ? Texts{} : told));
    CHECK(world.files.open == 0);
    CHECK(world.module.files().freeFile() == 1);
  }
}

}  // namespace
}  // namespace velk
