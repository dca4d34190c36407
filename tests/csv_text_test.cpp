#include "shared/csv_text.h"

#include "tests/support/test_world.h"

namespace velk {

using namespace std::string_literals;

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

}  // namespace velk
