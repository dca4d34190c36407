// The report as a page: what it says, and what it is never written over.
#include <doctest/doctest.h>
#include <filesystem>

#include "tests/support/runner.h"

namespace velk {
namespace {

/// The page's text, without its style and marks of elements.
std::string textOf(const std::string& page) {
  std::string text;
  for (std::size_t at = page.find("<body>"); at < page.size();) {
    const std::size_t mark = page.find('<', at);
    text.append(page, at, mark - at);
    at = page.find('>', mark);
    if (at < page.size()) ++at;
  }
  return text;
}

std::string pageOf(RunnerWorld& world, std::initializer_list<std::string_view> lines,
                   std::vector<std::string> more = {}) {
  const std::string path = world.folder.path("report.html");
  std::filesystem::remove(path);
  more.insert(more.end(), {"--report", path});
  const Ran ran = world.importLines(lines, std::move(more));
  CHECK_MESSAGE(contains(ran.out, "Report:    " + path), ran.out, ran.err);
  return world.folder.read("report.html");
}

TEST_CASE("the page says what the import came to") {
  RunnerWorld world;
  world.surroundings.user = [] { return "the <user>"; };
  const std::string text = textOf(pageOf(
      world, {openingTitles, "C001,Acme,R1,,1000000,500", "c001,,R2,,-5,-5", "C002,B,R3,,10,10",
              "C002,B,R4,03/04/2008,7,7", "NONE,\"\",R5,,3,3", "C003,Z,R6,,0,5"}));
  CAPTURE(text);
  for (const std::string_view part :
       {"Import of opening balances of customers", "3 of 6 records posted. The account adds up.",
        "the &lt;user&gt;", "2008-04-01 00:00:00", "company.db", "1,000,010.00",
        "Customer does not exist for code - NONE", "Balance is greater than BillAmount", "line 5",
        "rejected", "Correct 2 refused records", "Customer ID (#1)", "not mapped",
        "reads day first and month first", "5 recordsWithout a date"}) {
    CHECK_MESSAGE(contains(text, part), part);
  }
  // A party's code, name, records, of them posted, and balances.
  for (const std::string_view row :
       {"C001Acme22495.00495.00", "C002B2117.0010.00", "NONE103.000.00", "All63515.00505.00"}) {
    std::string cells(text);
    std::erase(cells, '\n');
    CHECK_MESSAGE(contains(cells, row), row);
  }
}

TEST_CASE("a refused file, a dry run and master data have pages, too") {
  RunnerWorld world;
  CHECK(contains(pageOf(world, {"Customer ID", "C001"}), "Nothing was imported. The file was ref"));
  const std::string dry = pageOf(world, {openingTitles, "C001,,,,1,1"}, {"--dry-run"});
  CHECK(contains(dry, "A dry run: nothing was posted. 1 of 1 record would be posted."));
  CHECK(world.ask("SELECT COUNT(*) FROM CustomerDebitNote") == "0");
  world.kind = "bank-branch";
  const std::string banks = pageOf(world, {bankTitles, "B1,One,R1,Road"});
  CHECK(contains(banks, "1 of 1 record posted."));
  CHECK_FALSE(contains(banks, "Bill debit"));
  CHECK_FALSE(contains(banks, "Totals of each party"));
}

TEST_CASE("a report takes the place of nothing") {
  RunnerWorld world;
  const std::string kept = world.folder.write("kept.html", "kept");
  const std::string rejects = world.folder.path("r.csv");
  const struct {
    std::string path;
    int status;
    std::string_view says;
  } rows[] = {
      {kept, 3, "never replaced"},
      {world.folder.path("in.csv"), 3, "the file to import"},
      {world.database() + "-wal", 3, "the database"},
      {world.folder.path("Error.log"), 3, "the error log"},
      {rejects + ".check.csv", 3, "--report and --rejects name one file"},
      {world.folder.path("none/r.html"), 4, "Path not found"},
      {world.folder.path(""), 4, "cannot be written"},
  };
  for (const auto& row : rows) {
    const Ran ran = world.importLines({openingTitles, "C001,,,,1,1"},
                                      {"--rejects", rejects, "--report", row.path});
    CAPTURE(row.path);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(contains(ran.err, row.says), ran.err);
  }
  CHECK(world.ask("SELECT COUNT(*) FROM CustomerDebitNote") == "0");
  CHECK(world.folder.read("kept.html") == "kept");
  // Somebody else takes the name during the run.
  const std::string late = world.folder.path("late.html");
  world.surroundings.user = [&] { return world.folder.write("late.html", "late"); };
  const Ran ran = world.importLines({openingTitles, "C001,,,,1,1"}, {"--report", late, "--json"});
  CHECK(ran.status == 5);
  CHECK(contains(ran.out, "\"reportError\":\"there is a file"));
  CHECK(world.folder.read("late.html") == "late");
}

}  // namespace
}  // namespace velk
