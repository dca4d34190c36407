// What the runner tells its user: each word has to be true, and of use for what he does next.
#include <doctest/doctest.h>

#include "tests/support/json_value.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

constexpr std::string_view good = "C001,,,,1,1";
constexpr std::string_view wrong = "C001,,,never,1,1";

TEST_CASE("a file of which nothing is understood has one warning, with the line to mend") {
  const std::string titles(openingTitles);
  const struct {
    std::string bytes;
    std::string_view kind, code, places;
  } rows[] = {
      {std::string("\xFF\xFE"
                   "C\0,\0\r\0\n\0"
                   "1\0,\0\r\0\n\0",
                   18),
       "customer-opening", "utf-16", "[]"},
      {titles + "\nC001,,,,1,1\n\nC002,\"a,,,1\n", "customer-opening", "bare-line-feeds", "[]"},
      {titles + "\rC001,,,,1,1\r", "customer-opening", "bare-carriage-returns", "[]"},
      {"Customer ID|Bill Amount|Balance\r\nC001|1,5|1\r\n", "customer-opening", "bar-separated",
       "[1]"},
      {"sep=,\r\n" + titles + "\r\nC001,,,,1,1\r\n", "customer-opening", "separator-line", "[1]"},
      {"Our company\r\n\r\n,,2008\r\n" + titles + "\r\nC001,,,,1,1\r\n", "customer-opening",
       "lines-above-titles", "[4]"},
      {"Banks\r\nBank Code,Bank Name,Branch Code,Branch Name\r\nB,B,B,B\r\n", "bank-branch",
       "lines-above-titles", "[2]"},
  };
  for (const auto& row : rows) {
    RunnerWorld world;
    const std::string in = world.folder.write("in.csv", row.bytes);
    const Json preview(world.run({"preview", std::string(row.kind), in, "--json", "--raw"}).out);
    CAPTURE(row.code);
    CHECK(preview.at("warnings[0].code") == row.code);
    CHECK(preview.at("warnings[0].lines") == row.places);
    CHECK_THROWS(preview.at("warnings[1]"));
  }
}

TEST_CASE("a note names its field, and a title its column") {
  RunnerWorld world;
  const Ran ran = world.importLines({"Customer ID,Date,,Bill Amount,Balance,\"x\"",
                                     "C001,03/04/2007,,1,1,", "C002,03/04/2007,,1,1,"},
                                    {"--raw"});
  CHECK_MESSAGE(contains(ran.out, "date-reads-both-ways (2, lines 2, 3, in Date)"), ran.out);
  CHECK(contains(ran.out, "blank-titles (1, line 1, in (#3))"));
  CHECK(contains(ran.out, "quoted-titles (1, line 1, in \"x\" (#6))"));
}

TEST_CASE("a dry run says that the log which a message names is not written") {
  RunnerWorld world;
  const Ran dry = world.importLines({openingTitles, wrong}, {"--dry-run"});
  CHECK(contains(dry.err, "a dry run writes no error log"));
  CHECK_FALSE(contains(world.importLines({openingTitles, wrong}).err, "a dry run"));
}

TEST_CASE("a database that takes nothing is to be mended, and not the records") {
  RunnerWorld world;
  const auto open = world.surroundings.openDatabase;
  world.surroundings.openDatabase = [&](const std::string& connection, const OdbcOptions& options) {
    auto database = open(connection, options);
    database->Execute("PRAGMA query_only=ON");
    return database;
  };
  const Ran ran = world.importLines({openingTitles, good, wrong, "C002,,,,2,2", "C003,,,,0,0"});
  CHECK(contains(ran.out, "Nothing was imported: the database refused all"));
  CHECK_MESSAGE(contains(ran.out, "readonly database"), ran.out);
  CHECK_FALSE(contains(ran.out, "Correct"));
}

TEST_CASE("a preview shows the mapping and the first rows, and makes nothing") {
  const TemporaryFolder folder;
  std::string bytes =
      crlf({"Customer ID,Bill Amount,Route,Balance", "C001,5,a very long text that is cut,5"});
  for (int i = 2; i <= 12; ++i) bytes += "K" + std::to_string(i) + ",1,x,1\r\n";
  const std::string in = folder.write("in.csv", bytes);
  RunnerWorld world;
  const Ran ran = world.run({"preview", "customer-opening", in, "--map", "Reference=Route"});
  CHECK(ran.status == 0);
  CHECK(ran.err.empty());
  for (const std::string_view part :
       {"(12 records)", "Reference     <- Route (#3)", "Date             not mapped",
        "  C001         5            a very long text that...  5\n", "  K10 "}) {
    CHECK_MESSAGE(ran.out.find(part) != std::string::npos, part);
  }
  CHECK(ran.out.find("K11") == std::string::npos);
  CHECK_FALSE(folder.has("opnimp.db"));
  CHECK_FALSE(folder.has("Error.log"));
}

TEST_CASE("a preview as JSON, valid whatever the file and its name hold") {
  RunnerWorld world;
  const std::string in =
      world.folder.write(std::string(noUtf8) + ".csv", "Customer ID,\xE9\"\r\nC001,\\\x01\x7F\r\n");
  const Json preview(world.run({"preview", "customer-opening", in, "--json"}).out);
  CHECK(preview.at("file").ends_with("\xEF\xBF\xBD.csv"));
  CHECK(preview.at("columns[1]") == "\xC3\xA9\"");
  CHECK(preview.at("rows[0][1]") == "\\\x01\x7F");
  CHECK(preview.at("mapping[0].column") == "1");
  CHECK(preview.at("mapping[3].column") == "null");
  CHECK(preview.at("recordCount") == "1");
}

TEST_CASE("each command has a help of its own, with what it takes") {
  const struct {
    std::vector<std::string> args;
    std::string_view says, saysNot;
  } rows[] = {
      {{"--help"}, "demo-database  ", "--dry-run"},
      {{"help", "import"}, "--rejects FILE", "the workbook to write"},
      {{"preview", "--help"}, "bank-branch", "--dry-run"},
      {{"export", "-h", "--json"}, "salesman   ", "bank-branch"},
  };
  for (const auto& row : rows) {
    const Ran ran = RunnerWorld().run(row.args);
    CAPTURE(ran.out);
    CHECK(ran.status == 0);
    CHECK(contains(ran.out, row.says));
    CHECK_FALSE(contains(ran.out, row.saysNot));
  }
}

}  // namespace
}  // namespace velk
