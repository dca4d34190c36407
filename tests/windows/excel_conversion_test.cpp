// Workbooks that the runner has the installed application save as .xls.
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/windows/fake_excel.h"

namespace velk {
namespace {

TEST_CASE("the runner: .xlsx and .ods by the installed application, which is started once") {
  RunnerWorld world;
  world.kind = "salesman";
  const std::string xls = OPNIMP_SOURCE_DIR "/samples/salesman.xls";
  const auto preview = [&](const std::string& file, Texts more = {}) {
    more.insert(more.begin(), {"preview", world.kind, file, "--json"});
    return world.run(more);
  };
  const std::string in = world.folder.write("in", "PK\x03\x04opendocument");
  const Ran without = preview(in);
  CHECK(without.status != 0);
  CHECK_MESSAGE(contains(without.err, "save it as .xls or CSV"), without.err);

  FakeExcel excel;
  std::ifstream file(xls, std::ios::binary);
  excel.savedBytes = {std::istreambuf_iterator<char>(file), {}};
  const auto once = [&](const Ran& ran, int status) {
    CHECK_MESSAGE(ran.status == status, ran.out, ran.err);
    CHECK(std::ranges::count(excel.calls, "Application.Quit") == 1);
    CHECK(excel.isReleased());
    excel.calls.clear();
  };
  const Ran ran = preview(in);
  CHECK(Json(ran.out).at("rows") == Json(preview(xls).out).at("rows"));
  once(ran, 0);
  once(preview(in, {"--sheet", "none"}), 2);
  once(world.import(in, {"--sheet", "#1", "--dry-run"}), 1);
  once(world.import(in, {"--sheet", "#1", "--from-line", "3", "--dry-run"}), 1);
  once(world.run({"convert", world.kind, in, world.folder.path("out.xls")}), 0);
  world.kind = "customer-opening";
  once(preview(in), 2);
}

}  // namespace
}  // namespace velk
