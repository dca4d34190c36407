// Previews: columns, mapping, first rows; no database.
#include <doctest/doctest.h>

#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

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
      world.folder.write("\xFF.csv", "Customer ID,\xE9\"\r\nC001,\\\x01\x7F\r\n");
  const Json preview(world.run({"preview", "customer-opening", in, "--json"}).out);
  CHECK(preview.at("file").ends_with("/\xEF\xBF\xBD.csv"));
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
      {{"--version"}, "opnimp ", "--help"},
  };
  for (const auto& row : rows) {
    const Ran ran = RunnerWorld().run(row.args);
    CAPTURE(ran.out);
    CHECK(ran.status == 0);
    CHECK(contains(ran.out, row.says));
    CHECK_FALSE(contains(ran.out, row.saysNot));
  }
}
