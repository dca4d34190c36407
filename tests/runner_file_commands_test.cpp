// Commands that help with files before an import: kinds, template, split.
#include <doctest/doctest.h>

#include "apps/opnimp/cli/kinds.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

TEST_CASE(
    "file commands: a template of each kind maps by itself, and its example can be imported") {
  RunnerWorld world;
  for (const ImportKind& kind : importKinds()) {
    const bool isWorkbook = kind.format == FileFormat::Workbook;
    const std::string file =
        world.folder.path(isWorkbook ? "t.xls" : std::string(kind.name) + ".csv");
    const std::string name(kind.name);
    CAPTURE(name);
    REQUIRE(world.run({"template", name, file}).status == 0);
    CHECK(world.run({"template", name, file}).status == 3);  // nothing is replaced
    world.kind = name;
    const Ran ran = world.import(file, {"--dry-run"});
    CHECK(ran.status == 0);
    // Document Type is the only field without a column of its own.
    CHECK(contains(ran.out, "not mapped") == (name == "customer-opening"));
    // What it says of mandatory columns is what the import asks for.
    for (const std::size_t field : kind.mandatory) CHECK(columnsOf(kind)[field].mandatory);
    CHECK(contains(world.run({"kinds", name}).out, columnsOf(kind).back().title));
  }
  CHECK(Json(world.run({"kinds", "--json"}).out).at("kinds[4].columns[6].title") == "HandHeld DS");
}

TEST_CASE(
    "file commands: a workbook has the columns on its second sheet, and a wrong name is refused") {
  RunnerWorld world;
  const std::string file = world.folder.path("opening.xls");
  const Ran written = world.run({"template", "vendor-opening", file});
  CHECK(written.status == 0);
  CHECK(contains(world.run({"preview", "vendor-opening", file}).out, "end with status 0"));
  const std::string bytes = world.folder.read("opening.xls");
  const std::string banks = world.folder.path("banks.xls");
  CHECK(world.run({"template", "bank-branch", banks}).status == 0);
  CHECK(world.run({"preview", "bank-branch", banks}).status == 0);
  for (const std::string_view part : {"Sheet1", "Columns", "Vendor ID", "what is still open"}) {
    CHECK(contains(bytes, part));
  }
  for (const char* name : {"x.txt", "x"}) {
    CHECK(world.run({"template", "vendor", world.folder.path(name)}).status == 3);
  }
  CHECK(world.run({"template", "salesman", world.folder.path("x.csv")}).status == 3);
}

TEST_CASE("file commands: the parts of a split file have all its records, each once and in order") {
  RunnerWorld world;
  const std::string file =
      world.folder.write("long.csv", crlf({openingTitles, "a", "b", "", "c", "d", "e"}));
  CHECK(contains(world.run({"split", file, "--records", "5"}).out, "nothing is to be split"));
  CHECK(world.run({"split", file, "--records", "2"}).status == 0);
  CHECK(world.folder.read("long.1.csv") == crlf({openingTitles, "a", "b"}));
  CHECK(world.folder.read("long.2.csv") == crlf({openingTitles, "c", "d"}));
  CHECK(world.folder.read("long.3.csv") == crlf({openingTitles, "e"}));
  CHECK(world.run({"split", file, "--records", "3"}).status == 3);  // a part is there already
  CHECK(world.folder.read("long.1.csv") == crlf({openingTitles, "a", "b"}));
  CHECK(world.run({"split", file, "--records", "0"}).status == 3);
  CHECK(world.run({"split", world.folder.path("none.csv")}).status == 4);
  for (const std::string& odd :
       {std::string("t,u\na,b\nc,d\n"), std::string("t,u\ra,b\rc,d"),
        std::string("\xFF\xFEt\0,\0", 6), crlf({"sep=;", "t;u", "a;b"}),
        crlf({"Company,", "t,u", "a,b"}), crlf({"t,u", "a,\"b", "c\",d"})}) {
    CAPTURE(odd);
    const Ran refused = world.run({"split", world.folder.write("odd.csv", odd), "--records", "1"});
    CHECK(refused.status == 2);
    CHECK(contains(refused.err, "`opnimp convert KIND FILE NEW-FILE`"));
    CHECK_FALSE(world.folder.has("odd.1.csv"));
  }
}
