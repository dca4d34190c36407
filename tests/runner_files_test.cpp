// Several files in one call: consecutive runs, one account, nothing of any if one is refused.
#include <doctest/doctest.h>

#include <thread>

#include "tests/support/json_value.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

std::string openings(const RunnerWorld& world, const std::string& name,
                     std::initializer_list<std::string_view> records) {
  return world.folder.write(name, crlf({openingTitles}) + crlf(records));
}

/// Imports the files in one call.
Ran importAll(RunnerWorld& world, std::vector<std::string> files,
              std::vector<std::string> more = {}) {
  more.insert(more.begin(), files.begin() + 1, files.end());
  return world.import(files.front(), std::move(more));
}

TEST_CASE("files of one call are runs of their own, with one account and the worst status") {
  RunnerWorld world;
  const std::vector<std::string> files{openings(world, "a.csv", {good1, good2}),
                                       openings(world, "b.csv", {unknownCustomer, good3}),
                                       openings(world, "c.csv", {"C004,D,R5,,7,7"})};
  const Json dry(importAll(world, files, {"--dry-run", "--json"}).out);
  CHECK(dry.at("status") == "1");
  CHECK(debits(world) == "0");
  const Ran ran = importAll(
      world, files,
      {"--json", "--rejects", world.folder.path("r.csv"), "--report", world.folder.path("p.html")});
  const Json call(ran.out);
  CHECK(ran.status == 1);
  CHECK(call.at("status") == "1");
  CHECK(call.at("files[1].status") == "1");
  CHECK(call.at("files[2].run") == "3");
  CHECK(call.at("account") == dry.at("account"));
  CHECK(call.at("account.outcomes.posted.count") == "4");
  CHECK(call.at("account.file.billDebit") == "118");
  CHECK(call.at("account.screenRecords") == "5");
  CHECK(debits(world) == "3");
  CHECK(world.folder.read("r.2.csv") == crlf({openingTitles, unknownCustomer}));
  CHECK(world.folder.has("r.1.csv"));
  CHECK_FALSE(world.folder.has("r.csv"));
  CHECK(contains(world.folder.read("p.3.html"), "c.csv"));
  CHECK(Json(world.run({"report", "2", "--json"}).out).at("account") ==
        call.at("files[1].account"));
  CHECK(contains(world.run({"runs"}).out, "c.csv"));
}

TEST_CASE("a file that is refused keeps all others from being posted") {
  const struct {
    std::string_view second;
    std::string_view says;
    bool previewSays = true;
  } rows[] = {
      {"C003,C,R3,,10.00,(1.00)", "with --accept amount-in-parentheses"},
      {"C003,C,R3,,10.00,", "Balance is empty in line 2 (record 1)"},
      {good2, "line 2 (line 3 of "},
      {"c002,B,r2,04/03/2008,-50.00,-20.00", "line 2 (line 3 of "},
      {"C004,D,Old,,7,7", "run 1 of 2008-04-01 00:00:00 posted this file already", false},
  };
  for (const auto& row : rows) {
    CAPTURE(row.second);
    RunnerWorld world;
    const std::string old = openings(world, "old.csv", {"C004,D,Old,,7,7"});
    CHECK(world.import(old).status == 0);
    const std::vector<std::string> files{openings(world, "a.csv", {good1, good2}),
                                         openings(world, "b.csv", {row.second})};
    for (const std::vector<std::string>& more :
         {{"--raw", "--dry-run"}, std::vector<std::string>{"--raw"}}) {
      const Ran ran = importAll(world, files, more);
      CHECK(ran.status == 2);
      CHECK_MESSAGE(contains(ran.out, row.says), ran.out);
      CHECK(contains(ran.out, "nothing of it was imported, since " + files[1] + " is refused"));
    }
    CHECK(debits(world) == "1");
    const Ran preview = world.run({"preview", world.kind, files[0], files[1], "--raw"});
    CHECK(preview.status == (row.previewSays ? 2 : 0));
    CHECK(contains(preview.out, row.says) == row.previewSays);
  }
}

TEST_CASE(
    "what two files share is posted twice only with --again, and zero amounts are no matter") {
  RunnerWorld world;
  const std::string a = openings(world, "a.csv", {good1, "C002,B,Z,,0,0"});
  CHECK(importAll(world, {a, openings(world, "b.csv", {"C002,B,Z,,0,0"})}).status == 0);
  CHECK(importAll(world, {a, openings(world, "c.csv", {good1})}, {"--again"}).status == 0);
  CHECK(debits(world) == "3");
  world.kind = "bank-branch";
  const std::string banks = world.folder.write("banks.csv", crlf({bankTitles, "B1,Bank,X1,One"}));
  const std::string more = world.folder.write("more.csv", crlf({bankTitles, "B1,Bank,X2,Two"}));
  const Json call(importAll(world, {banks, more}, {"--json"}).out);
  CHECK(call.at("account.banks.count") == "1");
  CHECK(call.at("account.branches.count") == "2");
}

TEST_CASE("a call that broke off is taken up with the same files") {
  RunnerWorld world;
  const std::vector<std::string> files{openings(world, "a.csv", {good1, unknownCustomer}),
                                       openings(world, "b.csv", {good2, "C004,D,R5,,5,5", good3}),
                                       openings(world, "c.csv", {"C005,E,R6,,6,6"})};
  CHECK(importAll(world, files, {"--resume"}).status == 3);
  // Asked before each file and each record; who waits for the run asks as often as it takes.
  world.surroundings.interrupted = [left = 5, self = std::this_thread::get_id()]() mutable {
    return std::this_thread::get_id() != self && left-- <= 0;
  };
  const Ran broken = importAll(world, files);
  CHECK(broken.status == 5);
  CHECK(contains(broken.out, "it was not begun, since the import ended at " + files[1]));
  CHECK(contains(broken.out, "Then import the same files with --resume"));
  CHECK(contains(broken.out, "Leave 2 records that the run did not reach"));
  for (const char* otherWay : {"Next:      Import", "import the file", "--from-line"}) {
    CHECK_MESSAGE(!contains(broken.out, otherWay), broken.out);
  }
  CHECK_MESSAGE(debits(world) == "1", broken.out);
  world.surroundings.interrupted = [] { return false; };
  const Json call(importAll(world, files, {"--resume", "--json"}).out);
  CHECK(call.at("status") == "0");
  CHECK(call.at("files[0].passedOver") == "true");
  CHECK(call.at("files[0].account") == "null");
  CHECK(call.at("files[1].resumes") == "2");
  CHECK(call.at("files[2].resumes") == "null");
  CHECK(call.at("account.fileRecords") == "3");
  CHECK(debits(world) == "4");
  const Ran again = importAll(world, files, {"--resume"});
  CHECK(again.status == 3);
  CHECK(contains(again.err, "reached all records of these files"));
}

TEST_CASE("what --from-line left out is never said to be reached, and keeps the status from 0") {
  RunnerWorld world;
  const std::string a = openings(world, "a.csv", {good1, good2, good3});
  CHECK(world.import(a, {"--from-line", "4"}).status == 0);
  CHECK(contains(world.import(a, {"--resume"}).err, "all records of the file from line 4 on"));
  const std::string b = openings(world, "b.csv", {"C004,D,R5,,7,7", "C005,E,R6,,6,6"});
  const Ran passed = importAll(world, {a, b}, {"--resume"});
  CHECK(passed.status == 1);
  CHECK(contains(passed.out, "run 1 reached all its records from line 4 on, or may have"));
  CHECK(contains(passed.out, "Look at the first 2 records of the file: run 1 and those"));
  CHECK(contains(importAll(world, {a, b}, {"--resume"}).err, "(" + a + " from line 4 on)"));

  world.surroundings.interrupted = [left = 2]() mutable { return left-- <= 0; };
  const std::string c =
      openings(world, "c.csv", {"C004,D,R7,,7,7", "C005,E,R8,,6,6", "C006,F,R9,,6,6"});
  CHECK(world.import(c, {"--from-line", "3"}).status == 5);
  world.surroundings.interrupted = [] { return false; };
  const Json rest(world.import(c, {"--resume", "--json"}).out);
  CHECK(rest.at("status") == "1");
  CHECK(rest.at("leftOut") == "1");
  CHECK(rest.at("account.fileRecords") == "1");
  CHECK(Json(world.run({"report", rest.at("run"), "--json"}).out).at("next") == rest.at("next"));
}

TEST_CASE("nothing of any file is posted if one is refused, also when opening one breaks off") {
  std::size_t broken = 0;
  for (std::size_t call = 0; call < 12; ++call) {
    CAPTURE(call);
    RunnerWorld world;
    world.script(std::string(call, '.') + "L");
    const std::string a = openings(world, "a.csv", {good1});
    const Ran ran = importAll(world, {a, openings(world, "b.csv", {good1})}, {"--json"});
    CHECK(ran.status >= 2);
    if (ran.out.empty()) continue;
    const Json told(ran.out);
    CHECK(told.at("files[0].run") == "null");
    CHECK(told.at("files[1].run") == "null");
    if (told.at("status") == "5") ++broken;
  }
  CHECK(broken > 0);
}

TEST_CASE("options that make no sense with several files are told, and nothing is done") {
  RunnerWorld world;
  const std::string a = openings(world, "a.csv", {good1});
  const std::string b = openings(world, "b.csv", {good3});
  const struct {
    std::vector<std::string> files, more;
    int status;
    std::string_view says;
  } rows[] = {
      {{a, b}, {"--from-line", "2"}, 3, "--from-line is of one file"},
      {{a, b}, {"--all-or-nothing"}, 3, "--all-or-nothing is of one file"},
      {{a, b, world.folder.path("./a.csv")}, {}, 3, "name one file, which would be imported twice"},
      {{a, b}, {"--report", world.folder.path("x.csv")}, 3, "would write over the file to import"},
      {{a, world.folder.path("none.csv")}, {}, 4, "none.csv could not be read"},
      {{a, ""}, {}, 3, "must not be empty"},
  };
  world.folder.write("x.2.csv", "");
  for (const auto& row : rows) {
    CAPTURE(row.says);
    std::vector<std::string> files = row.files;
    if (row.says.find("write over") != std::string_view::npos)
      files.push_back(world.folder.path("x.2.csv"));
    const Ran ran = importAll(world, files, row.more);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
  }
  CHECK(debits(world) == "0");
}

}  // namespace
}  // namespace velk
