// Profiles: how one file was read is kept, and the next one is read so.
#include <doctest/doctest.h>

#include "platform/native/native_privacy.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

struct Profiles {
  RunnerWorld world;
  std::string first = world.folder.write("1.csv",
                                         "Party;Note #;Day;Bill Amount;Balance\r\n"
                                         "C001;R1;03/25/2008;1.000,50;5\r\n");

  Ran save(std::vector<std::string> more = {}) {
    std::vector<std::string> args{"preview",           world.kind,       first,      "--map",
                                  "Customer ID=party", "--map",          "Date=Day", "--map",
                                  "Reference=#2",      "--save-profile", "acme"};
    args.insert(args.end(), more.begin(), more.end());
    return world.run(args);
  }
};

}  // namespace

TEST_CASE("a profile reads the next file as the first one was read") {
  Profiles profiles;
  RunnerWorld& world = profiles.world;
  const Ran saved = profiles.save({"--delimiter", "semicolon", "--accept", "date-without-year"});
  CHECK_MESSAGE(saved.status == 0, saved.out);
  const std::string path = world.folder.path("settings/opnimp/profiles/acme.ini");
  CHECK(contains(saved.err, "The profile acme was saved in " + path));
  const std::string text = world.folder.read("settings/opnimp/profiles/acme.ini");
  for (const char* line :
       {"kind = \"customer-opening\"", "map = \"Customer ID=Party\"", "map = \"Reference=Note #\"",
        "map = \"Balance=Balance\"", "delimiter = \"semicolon\"", "date-order = \"mdy\"",
        "decimal = \"comma\"", "accept = \"date-without-year\""}) {
    CHECK_MESSAGE(contains(text, line), text);
  }
  CHECK_FALSE(othersMayRead(path));
  world.folder.write("settings/opnimp/profiles/acme.ini", "\xEF\xBB\xBF" + text);
  // Neither the order of its dates nor its decimal sign can be told from the next one.
  const std::string next = world.folder.write(
      "2.csv", "Balance;Bill Amount;Day;Note #;PARTY\r\n5;1.250;03/04/2008;R2;C002\r\n");
  CHECK(world.import(next).status == 2);
  const Json report(world.import(next, {"--profile", "acme", "--json"}).out);
  CHECK(report.at("status") == "0");
  CHECK(report.at("assumed[0].value") == "acme");
  CHECK(Json(world.run({"report", "1", "--json"}).out).at("assumed[0].what") == "profile");
  CHECK(world.ask("SELECT Amount FROM CustomerDebitNote") == "1250");
  CHECK(contains(world.run({"preview", world.kind, next, "--profile", path}).out, "month first"));
  CHECK(contains(world.run({"preview", world.kind, next, "--profile", "acme"}).out,
                 "delimiter: semicolon (from the profile acme)"));
  CHECK(contains(world
                     .run({"convert", world.kind, next, world.folder.path("3.csv"),
                           "--profile=acme", "--date-order=dmy", "--decimal", "point"})
                     .out,
                 "day first"));
  CHECK(contains(world.folder.read("3.csv"), "5,1.250,03/04/2008"));
  CHECK(contains(world.import(next, {"--profile", "acme", "--raw"}).err,
                 "the profile acme: --raw imports the file as it is, and --"));
  // What does not fit is named, all of it, and nothing is posted.
  const std::string other =
      world.folder.write("4.csv", "Party;Bill Amount;When;Balance\r\nC001;1;03/04/2008;1\r\n");
  const Ran unfit = world.import(other, {"--profile", "acme"});
  CHECK(unfit.status == 2);
  CHECK_MESSAGE(contains(unfit.out, "no column \"Note #\", \"Day\"; it has: Party"), unfit.out);
  CHECK(debits(world) == "1");
}

TEST_CASE("a column is read as what it is mapped to, whatever the screens make of its title") {
  const struct {
    std::string title, row, map;
    double balance;
    std::vector<std::string> more;
    int next = 0;  // the status of the next file, read by the profile
  } rows[] = {
      {"\"Closing, INR\"", ";1.234", "Balance=\"Closing INR\"", 1234, {}},
      {"\"Closing \"\"net\"\"\"", ";1.234", "Balance=#6", 1234, {}},
      {"Opening;#6", ";7,00;100,50", "Balance=#7", 100.5, {}},
      {"\xD0\xA1\xD1\x83\xD0\xBC\xD0\xBC\xD0\xB0", ";1.234", "Balance=#6", 1234, {}, 2},
      {"\xD0\xA1\xD1\x83;\xD0\xBC\xD0\xBC", ";1.234;x", "Balance=\xD0\xA1\xD1\x83", 1234, {}, 2}};
  for (const auto& row : rows) {
    CAPTURE(row.title);
    RunnerWorld world;
    const std::string titles = "Customer ID;Customer Name;Reference;Date;Bill Amount;" + row.title;
    const auto file = [&](const std::string& name, const std::string& reference) {
      return world.folder.write(
          name, titles + "\r\nC001;n;" + reference + ";31/03/2008;2.000,50" + row.row + "\r\n");
    };
    std::vector<std::string> more{"--map", row.map, "--save-profile", "own"};
    more.insert(more.end(), row.more.begin(), row.more.end());
    const Ran ran = world.import(file("1.csv", "R1"), more);
    CHECK_MESSAGE(ran.status == 0, ran.out);
    const Ran next = world.import(file("2.csv", "R2"), {"--profile", "own"});
    CHECK(next.status == row.next);
    if (row.next != 0) CHECK_MESSAGE(contains(next.out, "--map \"Balance=#6\""), next.out);
    CHECK(std::stod(world.ask("SELECT sum(Balance) FROM CustomerDebitNote")) ==
          row.balance * (row.next == 0 ? 2 : 1));
  }
}

TEST_CASE("a profile that makes no sense is refused, and one that is there is kept") {
  Profiles profiles;
  RunnerWorld& world = profiles.world;
  const std::string kind = "kind = customer-opening\n";
  const struct {
    std::string text, says;
  } rows[] = {
      {"", "which kind"},
      {"kind = vendor\n", "for files of the kind vendor"},
      {kind + "database = x.db\n", "it has \"database\", which no profile has"},
      {kind + "[import]\ndecimal = comma\n", "which no profile has"},
      {kind + "decimal = comma\nencoding = UTF-8\ndecimal = point\n", "decimal more than once"},
      {kind + "skip-last-lines = 1\n", "which no profile has"},
      {kind + "date-order = \"ydm\"\n", "ydm not in"},
      {kind + "header-line = -1\n", "--header-line takes a number"},
      {kind + "replace = maybe\n", "replace is true"},
      {kind + "encoding = \n", "encoding has no value"},
      {kind + "encoding = no-such\n", "no encoding \"no-such\""},
      {kind + "map = nothing\n", "--map takes"},
      {kind + "accept = --again\n", "--again"},
      {kind + "#\xFF\n", "no text in UTF-8"},
      {std::string(70000, '#'), "larger than 64 KB"}};
  for (const auto& row : rows) {
    CAPTURE(row.says);
    const Ran ran =
        world.import(profiles.first, {"--profile", world.folder.write("p.ini", row.text)});
    CHECK(ran.status == 3);
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
  }
  CHECK(world.import(profiles.first, {"--profile", "none"}).status == 4);
  CHECK(profiles.save().status == 0);
  const Ran again = profiles.save();
  CHECK(again.status == 3);
  CHECK(contains(again.err, "never replaced"));
  // A title that no line takes; a file that is refused; no folder.
  const std::string lines =
      world.folder.write("l.csv", "Customer ID,\"Bill, \nAmount\",Balance\r\nC001,1,1\r\n");
  const Ran unsaved = world.run(
      {"preview", world.kind, lines, "--map", "Bill Amount=#2", "--save-profile", "lines"});
  CHECK(unsaved.status == 5);
  CHECK(contains(unsaved.err, "does not fit into a line"));
  CHECK(contains(world.run({"preview", world.kind, profiles.first, "--save-profile", "no"}).err,
                 "the file was refused"));
  CHECK_FALSE(world.folder.has("settings/opnimp/profiles/no.ini"));
  world.surroundings.settingsFolder.clear();
  CHECK(world.import(profiles.first, {"--profile", "acme"}).status == 4);
}

TEST_CASE("a profile takes the place of nothing that the same call writes") {
  RunnerWorld world;
  const std::string profile = world.folder.path("p");
  const struct {
    std::vector<std::string> more;
    std::string path, says;
  } rows[] = {{{"--journal", profile}, profile, "--journal and --save-profile name one file"},
              {{"--rejects", profile}, profile + ".reasons.csv", "name one file"},
              {{"--report", profile}, profile, "name one file"},
              {{"--metrics", profile}, profile, "name one file"},
              {{}, world.folder.path("Error.log"), "write over the error log"},
              {{}, world.database() + "-wal", "write over the database"}};
  for (auto row : rows) {
    row.more.insert(row.more.end(), {"--save-profile", row.path});
    const Ran ran = world.importLines({openingTitles, good1}, row.more);
    CHECK(ran.status == 3);
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
  }
  const std::string wal = world.database() + "-wal";
  CHECK(world
            .run({"preview", world.kind, world.folder.path("in.csv"), "--database",
                  world.database(), "--save-profile", wal})
            .status == 3);
  CHECK(debits(world) == "0");
  // Somebody else makes it during the run.
  world.surroundings.user = [&] { return world.folder.write("p", "late"); };
  const Ran late = world.importLines({openingTitles, good1}, {"--save-profile", profile, "--json"});
  CHECK(late.status == 5);
  CHECK(contains(late.out, "\"profileError\":\"there is a file"));
  CHECK(world.folder.read("p") == "late");
}
