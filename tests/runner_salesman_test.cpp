// Salesmen by command line: workbooks imported, previewed and exported.
#include <doctest/doctest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "apps/opnimp/audit/export_result.h"
#include "apps/opnimp/audit/pasted_value.h"
#include "masters/ds_type_rules.h"
#include "platform/native/native_files.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "samples/company/sample_company.h"
#include "tests/support/json_value.h"
#include "tests/support/other_user.h"
#include "tests/support/program.h"
#include "tests/support/runner.h"
#include "tests/support/salesmen.h"
#include "tests/support/workbook_seeds.h"

using namespace velk;

namespace {

struct SalesmanWorld : RunnerWorld {
  SalesmanWorld() { kind = "salesman"; }

  std::string write(const Texts& rows) { return folder.write("in.xls", workbook(rows)); }
  Ran importRows(const Texts& rows, std::vector<std::string> more = {}) {
    return import(write(rows), std::move(more));
  }
  Ran exportTo(const std::string& path, std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"export", "salesman", path, "--app-folder", folder.path(""),
                               "--database", database()});
    return run(std::move(more));
  }
  std::string typesOf(const std::string& salesman) {
    return ask(
        "select group_concat(DSTypeValue) from DStype_Details join DSType_Master using "
        "(DSTypeID) join Salesman using (SalesmanID) where Salesman_name='" +
        salesman + "'");
  }
  Texts rowsOf(std::string_view name) const { return sheetRows(folder.path(name)); }
};

const std::string good = "New Man|=1+1|00123|0099|x|Retail|YES";
#ifdef _WIN32
constexpr std::string_view notReadable = "save it as .xls or CSV";  // without an application
#else
constexpr std::string_view notReadable = "the end of its archive is missing";
#endif

const std::string unknown = " Odd One |-5|+91|@x|Rural|Retial|no";

}  // namespace

TEST_CASE("salesmen are saved, the refused ones go to a workbook that imports again") {
  SalesmanWorld world;
  const std::string rejects = world.folder.path("r.xls");
  const Ran ran =
      world.importRows({salesmanTitles, good, unknown, "Anil Kamble|||1||\"Wholesale\"|Yes"},
                       {"--json", "--rejects", rejects, "--accept", "handheld-yes-becomes-no"});
  CHECK(ran.status == 1);
  const Json report(ran.out);
  CHECK(report.outcomes() == "posted rejected posted-as-read");
  CHECK_MESSAGE(report.at("account.addsUp") == "true", ran.out);
  CHECK(report.at("account.ds-types.count") == "2");
  CHECK(report.at("records[1].row") == "3");
  CHECK(report.at("records[1].calls[0].check") == "Velk_sp_checkDefault_DSTypeValue");
  CHECK(report.at("next[1]") ==
        "The DS types that salesmen may be given: Retail, Rural, Wholesale.");
  CHECK(world.ask("select Address || ResidentialNUmber || MobileNumber from Salesman where "
                  "Salesman_name='New Man'") == "=1+1001230099");
  CHECK(world.typesOf("New Man") == "Retail,YES");
  CHECK(world.typesOf("Anil Kamble") == "Wholesale,NO");

  CHECK(world.rowsOf("r.xls") == Texts{salesmanTitles, unknown});
  CHECK(
      world.folder.read("r.xls.reasons.csv") ==
      crlf({"Record,Row,Outcome,Reason",
            "2,3,rejected,\"Odd One - Salesman(s) DSType not found in the DS Master : Retial\""}));
  CHECK_FALSE(world.folder.has("r.xls.check.xls"));
  const Ran formula = world.importRows({salesmanTitles, "=1+1|||||x|", "A\xC2\x9B|||||x|"},
                                       {"--json", "--rejects", world.folder.path("f.xls")});
  CHECK(contains(world.folder.read("f.xls.reasons.csv"), ",rejected,\"'=1+1 - Salesman(s)"));
  CHECK_FALSE(contains(formula.out, "\xC2\x9B"));
  CHECK(contains(formula.out, "A\\u009b"));
  const Ran again = world.import(rejects, {"--map", "DSType=Address", "--dry-run"});
  CHECK(contains(again.out, "DSType      <- Address (#2)"));
  CHECK(contains(again.out, "not found in the DS Master : -5"));
}

TEST_CASE("what becomes of salesmen when calls fail") {
  const struct {
    std::string_view what;
    std::string_view fates;  // 1 colours, 2 caption, then two checks and two procedures a record
    std::string_view outcomes;
    int status;
    std::string_view file;  // that holds the record
  } rows[] = {
      {"the check for a default value", "..x", "posted-with-warning posted", 1, ""},
      {"the look-up of a type", "...x", "rejected posted", 1, "r.xls"},
      {"saving the salesman", "....x", "partial posted", 1, "r.xls.check.xls"},
      {"both", "....xx", "failed posted", 1, "r.xls"},
      {"lost in a check", "..X", "not-reached not-reached", 5, "r.xls.rest.xls"},
      {"lost in saving", "....X", "unknown not-reached", 5, "r.xls.check.xls"},
      {"lost at View", ".X", "not-reached not-reached", 5, "r.xls.rest.xls"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.what);
    SalesmanWorld world;
    world.script(row.fates);
    const std::string second = "B|||||Retail|";
    const Ran ran = world.importRows(
        {salesmanTitles, good, second},
        {"--json", "--database", "DSN=any", "--rejects", world.folder.path("r.xls")});
    const Json report(ran.out);
    CHECK(report.outcomes() == row.outcomes);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(report.at("account.addsUp") == "true", ran.out);
    if (row.file.empty()) continue;
    CHECK(world.rowsOf(row.file)[1] == good);
    if (!contains(row.file, "check")) continue;
    CHECK_MESSAGE(contains(ran.out, "they are in "), ran.out);
  }
}

TEST_CASE("a text that no procedure takes is of the record, in a dry run, too") {
  SalesmanWorld world;
  const std::string longest(2049, 'x');
  for (const bool dry : {true, false}) {
    const Ran ran = world.importRows({salesmanTitles, "A|" + longest + "||||Retail|"},
                                     dry ? Texts{"--dry-run"} : Texts{});
    CHECK(ran.status == 1);
    CHECK_MESSAGE(contains(ran.out, dry ? "Look at 1 record that would not" : "Correct 1 refused"),
                  ran.out);
  }
}

TEST_CASE("a value with a quote is not pasted into a query") {
  const std::pair<std::string, bool> queries[] = {
      {"select count(*) from Customer where CustomerID=N'C001'", false},
      {"select count(*) from Customer where CustomerID=N'O'Brien'", true},
      {"select count(*) from Customer where CustomerID=N'x''", true},
      {"select count(*) from Vendors where VendorID='x'; delete from Vendors; --'", true},
      {std::string(dsTypeQueryStart) + "Retail" + std::string(dsTypeQueryEnd) + "'x'", false},
      {std::string(dsTypeQueryStart) + "x" + std::string(dsTypeQueryEnd) + "1; --" +
           std::string(dsTypeQueryEnd) + "'x'",
       true},
      {"SELECT TOP 1 'x' FROM Setup", false}};
  for (const auto& row : queries) {
    CAPTURE(row.first);
    CHECK(pastesQuote(row.first) == row.second);
  }
  // All three are true, whatever the type.
  for (const std::string type : {"x' or '1'='1", "x' or 1=1 --", "x'; delete from Salesman; --"}) {
    CAPTURE(type);
    SalesmanWorld world;
    const Ran ran = world.importRows({salesmanTitles, "A|||||" + type + "|", good});
    CHECK(ran.status == 1);
    CHECK(world.ask("select count(*) from Salesman where Salesman_name = 'A'") == "0");
    const std::string log = world.folder.read("Error.log");
    CHECK_MESSAGE(contains(log, "IsvalidateDSType - The value has a quote in it"), log);
    CHECK(contains(log, "A - Salesman(s) DSType not found in the DS Master : " + type));
    CHECK_MESSAGE(contains(ran.out, "has a quote in it"), ran.out);
  }
}

TEST_CASE("a workbook that does not do is refused, in words") {
  const struct {
    std::string bytes;
    std::string_view says;
  } rows[] = {
      {"", "the file is empty"},
      {"Salesman,Address\r\n", "a text file; save it as"},
      {"PK\x03\x04 and so on", notReadable},
      {workbook({}), "the first worksheet of the workbook is blank"},
      {workbook({"Salesman|Adress|ResNumber|MobNumber|Existing DSType|DSType", good}),
       R"(B1 holds "Adress" instead of "Address", G1 holds nothing instead of "HandHeld DS")"},
      {workbook({salesmanTitles, "|||||Retail|YES", good}), "row 2, where the first one must"},
      {workbook({salesmanTitles, good, "|x||||Retail|YES"}), "Salesman is empty in row 3"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.says);
    SalesmanWorld world;
    const std::string in = world.folder.write("in.xls", row.bytes);
    const Ran ran = world.import(in);
    CHECK(ran.status == 2);
    CHECK_MESSAGE(contains(ran.out, row.says), ran.out);
    CHECK(world.ask("select count(*) from Salesman") == "8");
  }
  SalesmanWorld world;
  world.ask("update DSType_Master set DSTypeName = 'Kind'");
  CHECK(contains(world.importRows({salesmanTitles, good}).out, "does not know the caption"));
  world.ask("delete from StoredProcedure where name = 'sp_Check_DSCaption'");
  CHECK(contains(world.importRows({salesmanTitles, good}).out, "Could not find stored procedure"));
  world.kind = "vendor";
  const std::string book = world.folder.path("in.xls");
  CHECK(contains(world.import(book, {"--raw"}).out, "the file is a workbook: import it without"));
}

TEST_CASE("warnings by workbook, in a preview that needs no database") {
  const struct {
    Texts rows;
    std::string_view warning;  // none: nothing may be warned of
    int status;                // that the import would have
  } rows[] = {
      {{"A|||||Retail|YES", "B||||x|Retail|no", "C|\"q\"||||Retail|"}, "", 0},
      {{"A|||||Retail|Yes", "B|||||Retail|yes"}, "handheld-yes-becomes-no (2, rows 2, 3,", 2},
      {{"A|||||Retail|1"}, "handheld-becomes-no (1, row 2,", 2},
      {{"A|||||Retail|", "B|||||Retail|", " a |||||Rural|"}, "duplicate-salesmen (1, row 4,", 2},
      {{"A|||||Retail|", "|||||Rural|", "", "D||||||"}, "rows-not-read (2, rows 3, 5)", 1},
      {{"A||||x||"}, "no-ds-type (1, row 2,", 1},
      {{"A|#N/A||||Retail|"}, "", 0},
      {{"A|\"Om\" Sai||||Retail|"}, "leading-quote (1, row 2,", 2},
  };
  for (const auto& row : rows) {
    CAPTURE(row.warning);
    SalesmanWorld world;
    Texts sheet{salesmanTitles};
    sheet.insert(sheet.end(), row.rows.begin(), row.rows.end());
    const Ran ran = world.run({"preview", "salesman", world.write(sheet)});
    CHECK(ran.status == row.status);
    CHECK(contains(ran.out, "Warnings\n") != row.warning.empty());
    CHECK_MESSAGE(contains(ran.out, row.warning), ran.out);
    CHECK_FALSE(world.folder.has("Error.log"));
  }
  SalesmanWorld world;
  CHECK(contains(
      world.run({"preview", "salesman", world.write({salesmanTitles + "|Zone", good})}).out,
      "other-columns (1, row 1)"));
  const Ran formulas = world.run(
      {"preview", "salesman", world.folder.write("in.xls", workbookSeed("poi_formulas.xls"))});
  for (const std::string_view warning :
       {"error-values (1, row 3, in MobNumber", "uncalculated-formulas (1, row 4, in Address",
        "hidden-sheet (1, in Old)"}) {
    CHECK_MESSAGE(contains(formulas.out, warning), formulas.out);
  }
  CHECK(formulas.status == 2);
}

TEST_CASE("a row behind a blank one is not called done") {
  SalesmanWorld world;
  const Ran ran = world.importRows({salesmanTitles, good, "", "B|||||Retail|"});
  CHECK(ran.status == 1);
  CHECK(contains(ran.out, "Import 1 row after the first blank row"));
}

#ifndef _WIN32
TEST_CASE("the fullest sheet is imported in less than 512 MB") {
  if (!triesAll()) return;  // it is a file of 240 MB
  const TemporaryFolder folder;
  createSampleCompany(folder.path("c.db"));
  {
    NativeFileSystem files;
    const auto sheet = XlsSpreadsheet(files).add();
    int column = 0;
    std::istringstream titles(salesmanTitles);
    for (std::string title; std::getline(titles, title, '|');) sheet->setText(1, ++column, title);
    for (int row = 2; row <= maxSheetRows; ++row) {
      for (column = 1; column <= maxSheetColumns; ++column) {
        const std::string own = "text " + std::to_string(row * 8 + column);
        sheet->setText(row, column, column <= 4 ? own : column == 7 ? "YES" : "Retail");
      }
    }
    sheet->saveAs(folder.path("full.xls"));
  }
  // The peak is asked for until the program has ended.
  const std::string script =
      "cd " + folder.path("") + "; " OPNIMP_PROGRAM +
      " import salesman full.xls --accept all --database c.db --app-folder . "
      "--journal j > out 2>&1 & while grep VmHWM /proc/$!/status; do sleep "
      ".02; done > peak; wait $!";
  CHECK(std::system(script.c_str()) == 0);
  CHECK(contains(folder.read("out"), "posted           65,535"));
  const std::string peaks = folder.read("peak");
  const std::size_t last = peaks.rfind("VmHWM:");
  REQUIRE(last != std::string::npos);
  const int megabytes = std::stoi(peaks.substr(last + std::size("VmHWM:"))) / 1024;
  MESSAGE(megabytes << " MB");
  CHECK(megabytes < 512);
}
#endif

TEST_CASE("an export tells what it wrote, and imports again") {
  SalesmanWorld world;
  const std::string out = world.folder.path("out.xls");
  const Ran ran = world.exportTo(out);
  CHECK(ran.status == 0);
  CHECK(contains(ran.out, "Wrote 8 salesmen to " + out + ".\n"));
  CHECK(ran.err.empty());
  CHECK(world.rowsOf("out.xls")[1] ==
        "Anil Kamble|14 Ganesh Peth, Pune|020-24450011|9822011223|Retail|Retail|YES");
  const Json report(world.exportTo(out, {"--json"}).out);
  CHECK(report.at("salesmen") == "8");
  CHECK(report.at("dsTypes[4]") == "Wholesale");
  CHECK(report.at("handheldValues[1]") == "YES");
  CHECK(report.at("failure") == "null");
  const Ran again = world.import(out);  // one salesman has no type
  CHECK(contains(again.out, "posted               7"));
  CHECK(world.typesOf("Anil Kamble") == "Retail,YES");
}

TEST_CASE("long lists are told of, and what no export may do is found") {
  SalesmanWorld world;
  world.ask(
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < 992) insert "
      "into Salesman (Salesman_name) select 'N' || i from n");
  const std::string out = world.folder.path("out.xls");
  CHECK(contains(world.exportTo(out).out, "rows up to 1,001 have none"));
  const auto connection = openOdbc(embeddedConnectionString(world.database()));
  NativeFileSystem files;
  CHECK(readExported(files, out, *connection).difference.empty());
  world.ask("update Salesman set Address = Address || 'x' where Salesman_name = 'Kiran Pawar'");
  CHECK(contains(readExported(files, out, *connection).difference, "\"Kiran Pawar\""));
  world.ask(
      "update Salesman set Address = replace(Address, 'x', '') where Salesman_name = 'Kiran "
      "Pawar'");
  world.ask("update DStype_Details set DSTypeID = 8 where SalesmanID = 1 and DSTypeID = 7");
  CHECK(contains(readExported(files, out, *connection).difference, "\"Anil Kamble\""));
  world.ask("delete from Salesman where Salesman_name = 'N1'");
  CHECK(contains(readExported(files, out, *connection).difference,
                 "1000 salesmen, the database 999"));
}

TEST_CASE("an export that cannot be says why, and leaves what was there") {
  SalesmanWorld world;
  const std::string text = world.folder.write("notes.xls", "notes");
  const std::string other = world.folder.write("other.xls", workbook({"Item|Price", "x|1"}));
  const std::string folder = world.folder.path("folder.XLS");
  std::filesystem::create_directory(folder);
  const struct {
    std::string path;
    int status;
    std::string_view says;
  } rows[] = {
      {text, 3, "no workbook of salesmen; choose another name"},
      {other, 3, "no workbook of salesmen"},
      {world.folder.path("out.txt"), 3, "choose a name that ends in .xls"},
      {world.database(), 3, "choose a name that ends in .xls"},
      {folder, 4, "cannot be written: it is a folder"},
      {world.folder.path("missing/out.xls"), 4, "cannot be written"},
      {world.folder.path("new.xls"), 4, "no such table: Salesman"},
  };
  CHECK(world.run({"export", "vendor", text}).status == 3);
  CHECK(world.run({"export", "salesman", text, "--dry-run"}).status == 3);
  world.ask("drop table DStype_Details");
  world.ask("drop table Salesman");
  for (const auto& row : rows) {
    CAPTURE(row.path);
    const Ran ran = world.exportTo(row.path);
    CHECK(ran.status == row.status);
    CHECK_MESSAGE(contains(ran.out + ran.err, row.says), ran.out << ran.err);
  }
  const std::string book = world.write({salesmanTitles});
  {
    const OtherUser holder(book);
    const Ran inUse = world.exportTo(book);
    CHECK(inUse.status == 2);
    CHECK(contains(inUse.out, "was not written: it is open in another program"));
  }
  CHECK(world.folder.read("in.xls") == workbook({salesmanTitles}));
  CHECK(world.folder.read("notes.xls") == "notes");
  CHECK_FALSE(world.folder.has("new.xls"));
}
