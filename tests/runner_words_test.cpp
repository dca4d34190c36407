// What the runner tells its user: each word has to be true, and of use for what he does next.
#include <doctest/doctest.h>

#include <filesystem>

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

TEST_CASE("a bank counts once, its branches each") {
  RunnerWorld world;
  world.kind = "bank-branch";
  const Json report(world
                        .importLines({"Bank Code,Bank Name,Branch Code,Branch Name", "B1,One,R1,a",
                                      "b1,One,R2,b", "B2,Two,R1,c"},
                                     {"--json"})
                        .out);
  CHECK(report.at("account.banks.count") == "2");
  CHECK(report.at("account.branches.count") == "3");
  CHECK(report.at("account.addsUp") == "true");
}

TEST_CASE("what cannot be opened is called what it is, and nothing is imported") {
  RunnerWorld world;
  const std::string in = world.folder.write("in.csv", crlf({openingTitles, good}));
  const std::string folder = world.folder.path("dir");
  std::filesystem::create_directory(folder);
  const std::string empty = world.folder.write("empty.db", "");
  const std::string workbook = world.folder.write("book.xlsx", "PK\x03\x04 and so on");
  const std::string db = world.database();
  const struct {
    std::vector<std::string> args;
    int status;
    std::string_view says, saysNot;
  } rows[] = {
      {{"import", "customer-opening", folder, "--database", db}, 4, "it is a folder", "Path/File"},
      {{"import", "customer-opening", in, "--database", db, "--rejects", folder},
       4,
       "it is a folder",
       "Path/File"},
      {{"import", "customer-opening", in, "--database", db, "--report", folder},
       4,
       "it is a folder",
       "Path/File"},
      {{"export", "salesman", folder + "/none/x.xls", "--database", db},
       4,
       "could not be written",
       "Path/File access"},
      {{"import", "customer-opening", in, "--database", empty, "--app-folder", folder},
       4,
       "is none of this application: no such table",
       "broke off"},
      {{"import", "salesman", workbook, "--database", db, "--app-folder", folder},
       2,
       "an .xlsx workbook; save it as",
       "under another name"},
      {{"export", "customers", "x.xls"}, 3, "there is: salesman", "vendor"},
  };
  for (const auto& row : rows) {
    const Ran ran = world.run(row.args);
    const std::string said = ran.out + ran.err;
    CAPTURE(said);
    CHECK(ran.status == row.status);
    CHECK(contains(said, row.says));
    CHECK_FALSE(contains(said, row.saysNot));
  }
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

TEST_CASE("a file of --rejects that fails does not keep the others from being written") {
  RunnerWorld world;
  const std::string rejects = world.folder.path("r.csv");
  const auto clock = world.surroundings.clock;
  world.surroundings.clock = [&] {
    std::filesystem::create_directory(rejects);  // after it was tried
    return clock();
  };
  const Ran ran = world.importLines({openingTitles, wrong, "C\x1B[2J,X,R9,03/03/2008,1.00,1.00"},
                                    {"--rejects", rejects, "--accept", "all"});
  CHECK(ran.status == 5);
  CHECK_MESSAGE(contains(ran.out, "r.csv cannot be written: it is a folder"), ran.out);
  CHECK(contains(world.folder.read("r.csv.reasons.csv"), "Invalid Date(never)"));
  CHECK(contains(world.folder.read("r.csv.reasons.csv"), "for code - C\\x1B[2J"));
}

}  // namespace
}  // namespace velk
