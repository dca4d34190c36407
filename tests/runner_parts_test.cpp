// Files of which a screen takes a part only: more records than it can hold, and --from-line.
#include <doctest/doctest.h>

#include "tests/support/json_value.h"
#include "tests/support/runner.h"

namespace velk {
namespace {

/// As many records as one screen takes, of bills of 0 but the first, and then some more.
std::string longFile(const RunnerWorld& world, std::initializer_list<std::string_view> more) {
  constexpr int mostOfScreen = 32766;
  std::string bytes = crlf({openingTitles, "C001,,First,,7,7"});
  for (int i = 1; i < mostOfScreen; ++i) bytes += "C001,,R" + std::to_string(i) + ",,0,0\r\n";
  return world.folder.write("long.csv", bytes + crlf(more));
}

TEST_CASE("what a screen does not take comes on the next, with one account and one file of each") {
  if (OPNIMP_SANITIZED) return;  // 33,000 records and their reports take most of a minute there
  RunnerWorld world;
  const std::string in =
      longFile(world, {"C002,,Last,,5,5", "", "NOPE,,X,,3,3", "C003,,B,,1e999,3", "C001,,C,,1,1"});
  const std::string rejects = world.folder.path("r.csv");
  const Ran ran = world.import(in, {"--accept", "all", "--rejects", rejects, "--json"});
  CHECK(ran.status == 5);
  const Json report(ran.out);
  CHECK_MESSAGE(contains(ran.err,
                         "The import stopped at record 32769: Overflow: Bill Amount(1e999) for "
                         "Customer - C003. Records before"),
                ran.err);
  CHECK(report.at("account.addsUp") == "true");
  CHECK(report.at("account.fileRecords") == "32770");
  CHECK(Json(world.run({"report", "1", "--json"}).out).at("account") == report.at("account"));
  CHECK(report.at("account.outcomes.posted.count") == "2");
  CHECK(report.at("account.outcomes.skipped.count") == "32765");
  CHECK(report.at("records[32767].line") == "32770");
  CHECK(report.at("records[32767].reason") == "Customer does not exist for code - NOPE");
  CHECK(report.at("warnings[0].code") == "too-many-records");
  CHECK(debits(world) == "2");
  CHECK(contains(world.folder.read("r.csv"), "NOPE,,X,,3,3\r\n"));
  CHECK(contains(world.folder.read("r.csv.reasons.csv"), "32768,32770,rejected"));
  CHECK(world.folder.read("r.csv.rest.csv") == crlf({openingTitles, "C001,,C,,1,1"}));
}

TEST_CASE("a value that is missing for a later screen is known before the first one posts") {
  RunnerWorld world;
  const std::string in = longFile(world, {"C002,,Last,,5,5", "C003,,X,,,3"});
  const Ran ran = world.import(in);
  CHECK(ran.status == 2);
  CHECK_MESSAGE(contains(ran.out, "Bill Amount is empty in line 32769 (record 32768)"), ran.out);
  CHECK(debits(world) == "0");
  CHECK(world.run({"preview", world.kind, in}).status == 2);
}

TEST_CASE("records before --from-line are left out") {
  RunnerWorld world;
  const std::string in = world.folder.write(
      "in.csv", crlf({openingTitles, "C001,,A,,1,1", "C002,,B,never,2,2", "", "C003,,C,,4,4"}));
  const Ran ran = world.import(in, {"--from-line", "3"});
  CHECK(ran.status == 1);
  CHECK_MESSAGE(contains(ran.out, "line 3 (record 1) rejected"), ran.out);
  CHECK(contains(ran.out, "The account adds up."));
  CHECK(world.ask("select sum(Amount) from CustomerDebitNote") == "4");
  const struct {
    std::string kind, line;
    int status;
    std::string_view says;
  } rows[] = {
      {"customer-opening", "0", 3, "takes the number of a line"},
      {"customer-opening", "2x", 3, "takes the number of a line"},
      {"customer-opening", "6", 3, "no record of "},
  };
  for (const auto& row : rows) {
    world.kind = row.kind;
    const Ran refused = world.import(in, {"--from-line", row.line});
    CAPTURE(row.line);
    CHECK(refused.status == row.status);
    CHECK_MESSAGE(contains(refused.err, row.says), refused.err);
  }
  CHECK(debits(world) == "1");
}

}  // namespace
}  // namespace velk
