// Workbooks that the runner has the installed application save as .xls.
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/windows/fake_excel.h"

namespace velk {
namespace {

TEST_CASE("the runner: .xlsx and .ods by the installed application, which is asked nothing more") {
  RunnerWorld world;
  const std::string xls = OPNIMP_SOURCE_DIR "/samples/salesman.xls";
  const auto preview = [&](const std::string& file) {
    return world.run({"preview", "salesman", file, "--json"});
  };
  const std::string in = world.folder.write("in", "PK\x03\x04opendocument");
  const Ran without = preview(in);
  CHECK(without.status == 4);
  CHECK_MESSAGE(contains(without.err, "save it as .xls or CSV"), without.err);

  FakeExcel excel;
  std::ifstream file(xls, std::ios::binary);
  excel.savedBytes = {std::istreambuf_iterator<char>(file), {}};
  const Ran ran = preview(in);
  CHECK_MESSAGE(ran.status == 0, ran.err);
  CHECK(Json(ran.out).at("rows") == Json(preview(xls).out).at("rows"));
  CHECK(excel.calls == Texts{"Application.DisplayAlerts=False", "Application.EnableEvents=False",
                             "Application.AutomationSecurity=3",
                             "Workbooks.Open(,0,True,,?,,True,,,,False)", "Worksheets.Count",
                             "Application.Version", "Open(,0,True,,?,,True,,,,False).SaveAs(-4143)",
                             "Open(,0,True,,?,,True,,,,False).Close(False)", "Application.Quit"});
  CHECK(excel.isReleased());

  // More than an .xls file holds would be cut off.
  excel.answers["Worksheets.Count"] = Variant(1);
  for (const char* place : {"UsedRange.Row", "UsedRange.Column"}) {
    CAPTURE(place);
    excel.answers[place] = Variant(70000);
    const Ran refused = preview(in);
    CHECK(refused.status == 4);
    CHECK_MESSAGE(contains(refused.err, "split it"), refused.err);
    excel.answers.erase(place);
  }
  // What the application says is told.
  excel.failAt = excel.count + 4;
  CHECK(contains(preview(in).err, "The application says why"));
  CHECK(excel.isReleased());
}

}  // namespace
}  // namespace velk
