// Salesmen to a workbook.
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "tests/support/salesmen.h"
#include "tests/support/xls_records.h"

namespace velk {
namespace {

const std::string dsTypesQuery =
    "select DSTypeValue from DSType_Master where DSTypeCtlPos=1 and OCGtype = ( select flag from "
    "tbl_velk_configabstract where screencode = 'OCGDS')";
const std::string handheldsQuery = "select DSTypeValue from DSType_Master where DSTypeCtlPos=2";
const std::string salesmenQuery =
    "select S.Salesman_name,Address,ResidentialNUmber,MobileNumber,(select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=1),isnull((select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=2),'No') from Salesman S order by "
    "Salesman_name";

struct Salesmen : SalesmanScreen {
  Salesmen() {
    world.database->calls.clear();
    world.database->answerRows(dsTypesQuery, {{std::string("Retail")}, {std::string("Old")}});
    world.database->answerRows(handheldsQuery, {{std::string("Yes")}});
    const auto text = [](const char* t) { return Value(std::string(t)); };
    world.database->answerRows(
        salesmenQuery, {{text("=A"), text("adr"), text("020"), Null(), text("Retail"), text("Yes")},
                        {text("B"), text("-1"), text("+9"), text("@"), Null(), Null()}});
  }
};

Texts sheetRows(const std::string& file, int columns) {
  const auto sheet = readXls(file, ColumnSet().set());
  Texts rows;
  for (int row = 1; row <= sheet->rowCount(); ++row) {
    std::string text;
    for (int column = 1; column <= columns; ++column) {
      text += (column > 1 ? "|" : "") + sheet->text(row, column);
    }
    rows.push_back(text);
  }
  return rows;
}

TEST_CASE("an export and its way back") {
  Salesmen out;
  CHECK(out.exportTo("out.xls") == EventResult::Handled);
  CHECK(out.world.messages.empty());
  CHECK(out.world.log().empty());
  CHECK(out.world.desktop.opened == Texts{"out.xls"});
  Texts queries;
  for (const FakeCall& call : out.world.database->calls) queries.push_back(call.text);
  CHECK(queries == Texts{dsTypesQuery, handheldsQuery, salesmenQuery});
  CHECK(sheetRows(out.world.files.contents["out.xls"], 8) ==
        Texts{salesmanTitles + "|", "=A|adr|020||Retail|Retail|Yes|", "B|-1|+9|@||||"});
  out.view({});
  out.world.messages.clear();
  out.world.view(*out.screen, out.world.files.contents["out.xls"]);
  CHECK(rowText(out.screen->lstCust, 2) == "=A|adr|020||Retail|Yes");
  CHECK(rowText(out.screen->lstCust, 3) == "B|-1|+9|@||");
}

TEST_CASE("the look of the workbook, and its lists") {
  using namespace std::string_literals;
  Salesmen out;
  out.world.database->answerRows(dsTypesQuery, {});
  out.world.database->answerRows(handheldsQuery, {{std::string("Yes")}, {std::string("No")}});
  out.exportTo("out.xls");
  const std::string& file = out.world.files.contents["out.xls"];
  const auto sheet = readXls(file, ColumnSet().set());
  CHECK(sheet->text(1, 250) + sheet->text(2, 250) == "DSType");
  CHECK(sheet->text(1, 251) + sheet->text(2, 251) + sheet->text(3, 251) == "DSTypeYesNo");
  const Texts lists = recordsOf(file, xls::Record::Validation);  // IP1:IP2, IQ2:IQ3
  REQUIRE(lists.size() == 2);
  CHECK(lists[0].ends_with("\x25\0\0\1\0\xF9\0\xF9\0\0\0\0\0\1\0\1\0\xE7\3\5\0\5\0"s));
  CHECK(lists[1].ends_with("\x25\1\0\2\0\xFA\0\xFA\0\0\0\0\0\1\0\1\0\xE7\3\6\0\6\0"s));
  const Texts columns = recordsOf(file, xls::Record::ColumnInfo);
  REQUIRE(columns.size() == 9);  // A to E as wide as their texts, F and G 30, IP and IQ hidden
  CHECK(columns[5].starts_with("\5\0\5\0\xB6\x1E"s));
  CHECK(columns[6].starts_with("\6\0\6\0\xB6\x1E"s));
  for (const std::size_t i : {0U, 4U, 7U, 8U}) CHECK(columns[i][8] == (i > 6 ? 1 : 0));
  // Format 16, text, in what is typed into the columns of telephone numbers.
  for (const std::size_t i : {1U, 2U, 3U, 4U}) CHECK(columns[i][6] == (i / 2 == 1 ? 16 : 15));
  const Texts blanks = recordsOf(file, xls::Record::Blank);
  CHECK(std::count(blanks.begin(), blanks.end(), "\0\0\7\0\x11\0"s) == 1);  // bold up to H1
}

TEST_CASE("what the export asks for, and how wide its columns become") {
  using namespace std::string_literals;
  Salesmen out;
  const std::string longName(60, 'W');
  out.world.database->answerRows(salesmenQuery,
                                 {{longName, Null(), Null(), Null(), Null(), Null()}});
  out.screen->CommonDialog1.set(Property::FileName, std::string("before.xls"));
  out.exportTo("out.xls");
  const CommonDialog& dialog = out.screen->CommonDialog1;
  CHECK(dialog.text(Property::DialogTitle) == "Salesman Export");
  CHECK(dialog.text(Property::Filter) == "Excel Spreadsheets (*.xls)|*.xls");
  CHECK(dialog.text(Property::InitDir) == "/app");
  // As wide as the longest name, which the caption is not: fitted when all texts were there.
  const std::string width =
      recordsOf(out.world.files.contents["out.xls"], xls::Record::ColumnInfo)[0].substr(5, 1);
  CHECK(static_cast<unsigned char>(width[0]) > 60);
}

TEST_CASE("a file that somebody has filled meanwhile is not removed by an export that fails") {
  Salesmen out;
  out.world.database->onCall = [&](const FakeCall&) {
    out.world.files.contents["out.xls"] = "theirs";
  };
  out.world.database->fail("select S", ErrorNumber::ObjectNotSet, "no");
  out.exportTo("out.xls");
  CHECK(out.world.files.contents["out.xls"] == "theirs");
}

TEST_CASE("more than a worksheet has rows") {
  for (const std::string_view what : {"DS types", "salesmen"}) {
    Salesmen out;
    const bool types = what == "DS types";
    const Value name(std::string("A"));
    const std::vector<Value> record(types ? 1 : 6, name);
    std::vector<std::vector<Value>> records(65535, record);
    const std::string query = types ? dsTypesQuery : salesmenQuery;
    out.world.database->answerRows(query, records);
    out.exportTo("out.xls");
    CHECK(out.world.messages.empty());
    records.push_back(record);
    out.world.database->answerRows(query, records);
    out.exportTo("out.xls");
    CHECK(out.world.messages ==
          Texts{"box 16: Unable to export the Salesman information [Salesman Import]"});
    CHECK(out.world.log() ==
          "(9): Velk_frmBankBranch_OpnImp : ExportToExcel - A worksheet has room for 65,535 " +
              std::string(what) + ", and the database has more\n");
  }
}

TEST_CASE("exports that fail, and what is left of the file") {
  const std::string failed = "box 16: Unable to export the Salesman information [Salesman Import]";
  const std::string inUse =
      "box 64: File is already open or accessed by some other process. Please close that Excel "
      "File. [Salesman Export]";
  using Call = MemoryFiles::Call;
  const struct {
    const char* query;
    Call call;
    std::string message, log;
  } rows[] = {
      {"", Call::OpenExclusively, inUse, ""},
      {"", Call::OpenReplacement, failed, ""},
      {"", Call::Write, failed, ""},
      {"", Call::Close, failed, ""},
      {"select", Call::None, failed, "(91): Velk_frmBankBranch_OpnImp : ExportToExcel - no\n"},
      {"select S", Call::None, failed, "(91): Velk_frmBankBranch_OpnImp : ExportToExcel - no\n"},
  };
  for (const auto& row : rows) {
    for (const bool replaces : {false, true}) {
      CAPTURE(row.query);
      CAPTURE(static_cast<int>(row.call));
      Salesmen out;
      if (*row.query != '\0') out.world.database->fail(row.query, ErrorNumber::ObjectNotSet, "no");
      if (replaces) out.world.files.contents["out.xls"] = "old";
      out.world.files.failing = row.call;
      out.exportTo("out.xls");
      out.world.files.failing = Call::None;
      CHECK(out.world.messages == Texts{row.message});
      if (row.call == Call::None) CHECK(out.world.log() == row.log);
      CHECK(out.world.files.contents.count("out.xls") == (replaces ? 1 : 0));
      if (replaces) CHECK(out.world.files.contents["out.xls"] == "old");
      CHECK(out.world.desktop.opened.empty());
    }
  }
  Salesmen out;
  out.world.desktop.chooseFile(std::nullopt);
  out.screen->cmdExport.userClick();
  CHECK(out.world.messages.empty());
  CHECK(out.world.database->calls.empty());
}

}  // namespace
}  // namespace velk
