// The salesmen's workbook through LibreOffice, where that is installed: what it finds in an export,
// and what an import finds in what it wrote.
#include <cstdlib>
#include <regex>

#include "tests/support/runner.h"
#include "tests/support/salesmen.h"

namespace velk {
namespace {

bool lacksOffice() {
  const bool lacks = std::system("command -v soffice >/dev/null 2>&1") != 0;
  if (lacks) MESSAGE("LibreOffice is not installed: skipped (scripts/setup --office)");
  return lacks;
}

/// Converts a file of the folder to another format, beside it.
void convert(const TemporaryFolder& folder, const std::string& file, const std::string& format) {
  const std::string command = "soffice --headless -env:UserInstallation=file://" +
                              folder.path("profile") + " --convert-to '" + format + "' --outdir '" +
                              folder.path("") + "' '" + folder.path(file) + "' >/dev/null 2>&1";
  REQUIRE(std::system(command.c_str()) == 0);
}

struct ExportedSalesmen : SalesmanScreen {
  ExportedSalesmen() {
    const auto text = [](const char* t) { return Value(std::string(t)); };
    world.database->answerRows("select DSTypeValue from DSType_Master where DSTypeCtlPos=1",
                               {{text("Retail")}, {text("Old")}, {text("Naïve")}});
    world.database->answerRows("select DSTypeValue from DSType_Master where DSTypeCtlPos=2",
                               {{text("YES")}, {text("NO")}});
    world.database->answerRows(
        "select S.",
        {{text("=A\"&1"), text("1\nadr"), text("020"), text("98"), text("Old"), text("YES")},
         {text("Čapek"), text("-1"), text("1-2"), text("+91"), Null(), text("No")}});
    exportTo("out.xls");
  }
};

/// A cell of a flat document.
std::string cell(const std::string& text, const std::string& attributes = "") {
  return "<table:table-cell " + attributes +
         R"(office:value-type="string" calcext:value-type="string">)" + "\n      <text:p>" + text +
         "</text:p>\n     </table:table-cell>";
}

void replace(std::string& text, const std::string& what, const std::string& with) {
  const std::size_t at = text.find(what);
  REQUIRE(at != std::string::npos);
  text.replace(at, what.size(), with);
}

const std::string styled = R"(table:style-name="ce2" )";
const std::string dsTypeList = R"(table:content-validation-name="val1" )";

TEST_CASE("an export edited in LibreOffice and imported") {
  if (lacksOffice()) return;
  ExportedSalesmen salesmen;
  const TemporaryFolder folder;
  folder.write("out.xls", salesmen.world.files.contents["out.xls"]);
  convert(folder, "out.xls", "fods");
  std::string sheet = folder.read("out.fods");

  for (const char* found : {
           R"x(condition="of:cell-content-is-in-list([.$IP$2:.$IP$4])")x",
           R"x(condition="of:cell-content-is-in-list([.$IQ$2:.$IQ$3])")x",
           // Columns F and G, then IP and IQ; 999 cells of each list, the last ones in one.
           R"("co6" table:number-columns-repeated="2" table:default-cell-style-name="ce3"/>)",
           R"("co8" table:visibility="collapse" table:number-columns-repeated="2")",
           R"(<table:table-row table:style-name="ro1" table:number-rows-repeated="996">)",
       }) {
    CAPTURE(found);
    CHECK(sheet.find(found) != std::string::npos);
  }
  // In inches: 30 characters, and what "Existing DSType" in bold and "98" in plain take.
  const auto width = [&](const std::string& style) {
    std::smatch found;
    std::regex_search(sheet, found, std::regex(style + "\"[^]*?column-width=\"([0-9.]+)in\""));
    return std::stod(found[1]);
  };
  CHECK(width("co6") == doctest::Approx(2.37).epsilon(0.05));
  CHECK(width("co5") == doctest::Approx(1.16).epsilon(0.1));
  CHECK(width("co2") < width("co5"));
  std::smatch bold;
  REQUIRE(
      std::regex_search(sheet, bold, std::regex("style:name=\"ce1\"[^]*?fo:font-weight=\"bold\"")));
  CHECK(bold.str().find("ce2") == std::string::npos);
  CHECK(sheet.find(cell("Salesman", R"(table:style-name="ce1" )")) != std::string::npos);

  // What a user does: two types chosen, a handheld value corrected, a number typed.
  replace(sheet, cell("Old", styled + dsTypeList), cell("Retail"));
  replace(sheet, "<table:table-cell " + dsTypeList.substr(0, dsTypeList.size() - 1) + "/>",
          cell("Naïve"));
  replace(sheet, "<text:p>No</text:p>", "<text:p>NO</text:p>");
  // Phone numbers have the format of their column, which is text.
  replace(sheet, cell("+91"),
          R"(<table:table-cell office:value-type="float" office:value="919876543210"/>)");
  folder.write("edited.fods", sheet);
  convert(folder, "edited.fods", "xls:MS Excel 97");

  salesmen.world.view(*salesmen.screen, folder.read("edited.xls"));
  CHECK(rowsOf(salesmen.screen->lstCust) ==
        Texts{"Salesman*|Address*|ResNumber*|MobNumber*|DSType*|HandHeld DS*",
              "=A\"&1|1\nadr|020|98|Retail|YES", "Čapek|-1|1-2|919876543210|Naïve|NO"});
  salesmen.import();
  CHECK(salesmen.world.database->procedureCalls().at(3) ==
        "sp_save_DsType; 200 =A\"&1; 200 DSType; 200 Retail; 200 HandHeld DS; 200 YES");
}

}  // namespace
}  // namespace velk
