// Workbooks that the runner has the installed application save as .xls.
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/windows/fake_excel.h"

namespace velk {
namespace {

TEST_CASE("the runner: .xlsx and .ods by the installed application") {
  RunnerWorld world;
  const std::string xls = OPNIMP_SOURCE_DIR "/samples/salesman.xls";
  const auto preview = [&](const std::string& file) {
    return world.run({"preview", "salesman", file, "--json"});
  };
  const std::string in = world.folder.write("in", "PK\x03\x04opendocument");
  const Ran without = preview(in);
  CHECK(without.status != 0);
  CHECK_MESSAGE(contains(without.err, "save it as .xls or CSV"), without.err);

  FakeExcel excel;
  std::ifstream file(xls, std::ios::binary);
  excel.savedBytes = {std::istreambuf_iterator<char>(file), {}};
  const Ran ran = preview(in);
  CHECK_MESSAGE(ran.status == 0, ran.err);
  CHECK(Json(ran.out).at("rows") == Json(preview(xls).out).at("rows"));
  CHECK(excel.isReleased());
}

}  // namespace
}  // namespace velk
