// The program as a command among others: standard streams, what it tells, and its version.
#include <doctest/doctest.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "apps/opnimp/cli/line_colors.h"
#include "apps/opnimp/cli/progress.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

TEST_CASE("standard input and output are files") {
  RunnerWorld world;
  const std::string bytes = "Customer ID;Bill Amount;Balance\nC001;1,5;1,5\nC999;2,5;2\n";
  const auto piped = [&](std::vector<std::string> args) {
    world.surroundings.input = [&](std::size_t /*most*/) { return bytes; };
    return world.run(std::move(args));
  };
  const Ran convert = piped({"convert", world.kind, "-", "-"});
  CHECK(convert.status == 0);
  CHECK(convert.out == crlf({"Customer ID,Bill Amount,Balance", "C001,1.5,1.5", "C999,2.5,2"}));
  CHECK(contains(convert.err, "decimal sign: comma"));
  CHECK(piped({"convert", world.kind, "-", "-", "--quiet"}).err.empty());
  CHECK(contains(piped({"preview", world.kind, "-"}).out, "File: - (2 records)"));
  const std::string rejects = world.folder.path("r.csv");
  const Ran import = piped({"import", world.kind, "-", "--app-folder", world.folder.path(""),
                            "--database", world.database(), "--rejects", rejects, "--verbose"});
  CHECK(import.status == 1);
  CHECK(debits(world) == "1");
  CHECK(contains(world.folder.read("r.csv"), "C999,2.5,2\r\n"));
  CHECK(contains(import.err, "opnimp: begin, file -, run 1, kind customer-opening"));
  CHECK(contains(import.err, "opnimp: record, file -, record 2, line 3, outcome rejected"));
  CHECK(contains(import.err, "opnimp: end, file -, run 1, status 1"));
  const struct {
    std::vector<std::string> args;
    std::string_view says;
  } rows[] = {
      {{"preview", "salesman", "-"}, "a workbook is not read from standard input"},
      {{"split", "-"}, "a file needs a name here"},
      {{"demo-database", "-"}, "a file needs a name here"},
      {{"import", world.kind, "-", "-"}, "- and - name one file"},
      {{"import", world.kind, "-", "--report", "-"}, "--report needs the name of a file"},
      {{"import", world.kind, "-", "--rejects=-"}, "--rejects needs the name of a file"},
      {{"import", world.kind, "-", "--metrics", "-"}, "--metrics needs the name of a file"},
      {{"import", world.kind, "-", "--map=Date=#1", "--map", "date=#2"}, "field date twice"},
      {{"import", world.kind, "-", "--raw", "--replace"}, "as it is, and --replace says"},
      {{"preview", world.kind, "-", "--skip-last-lines=1", "--raw"}, "and --skip-last-lines"},
      {{"convert", "salesman", "in", "out", "--date-order=mdy"}, "--date-order is of texts"},
      {{"convert", world.kind, "none", "-", "--json", "--raw"},
       "{\"status\":3,\"error\":\"The following"},
      {{"convert", "salesman", rejects, "-", "--json"},
       "{\"status\":3,\"error\":\"a workbook is not"}};
  for (const auto& row : rows) {
    const Ran ran = piped(row.args);
    CHECK(ran.status == 3);
    CHECK(ran.out.empty());
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
  }
}

TEST_CASE("a quiet command tells of what did not go well only") {
  RunnerWorld world;
  world.terminal = true;
  const Ran well = world.importLines({openingTitles, good1}, {"-q"});
  CHECK(well.status == 0);
  CHECK(well.out + well.err == "");
  CHECK(contains(world.importLines({openingTitles, unknownCustomer}, {"-q"}).out, "C999"));
  CHECK(world.importLines({openingTitles, good2}, {"-q", "-v"}).status == 3);
}

TEST_CASE("the progress line tells the rate, and the time that is left") {
  CHECK(progressText(50, 100, 0, 1) == "50 of 100 records");
  CHECK(progressText(5'000, 32'766, 1'000, 4) ==
        "5,000 of 32,766 records, 1,000 a second, 27 s left");
  CHECK(progressText(10, 32'766, 0, 10) == "10 of 32,766 records, 1 a second, 545 minutes left");
}

TEST_CASE("the version is that of the changelog, with the commit and the engines") {
  const Ran ran = RunnerWorld().run({"--version"});
  const std::regex form(
      "opnimp ([0-9]+\\.[0-9]+\\.[0-9]+)\ncommit (?:[0-9a-f]{12}(?:-modified)?|unknown)\n"
      "engines SQL Server, SQLite, PostgreSQL, MariaDB\n");
  std::smatch parts;
  REQUIRE_MESSAGE(std::regex_match(ran.out, parts, form), ran.out);
  std::ifstream changes(OPNIMP_SOURCE_DIR "/CHANGELOG.md");
  std::string title;
  std::string blank;
  std::getline(changes, title);
  std::getline(changes, blank);
  std::getline(changes, title);
  CHECK(title == "## " + parts.str(1));
  CHECK(contains(RunnerWorld().run({"man"}).out, "\"opnimp " + parts.str(1) + "\""));
}

TEST_CASE("a terminal that wants colours shows lines of a sort in one") {
  std::ostringstream shown;
  {
    const LineColors colors(shown);
    shown << "Warnings\n    HARMFUL: x\n\nplain\rNext: a" << std::flush << "\n  li" << std::flush;
  }
  shown << "Account";
  CHECK(shown.str() ==
        "\x1B[1mWarnings\x1B[0m\n\x1B[1;31m    HARMFUL: x\x1B[0m\n\nplain\r"
        "\x1B[32mNext: a\x1B[0m\n  liAccount");
  CHECK(wantsColors("xterm", ""));
  for (const char* terminal : {static_cast<const char*>(nullptr), "dumb"}) {
    CHECK_FALSE(wantsColors(terminal, nullptr));
  }
  CHECK_FALSE(wantsColors("xterm", "1"));
}
