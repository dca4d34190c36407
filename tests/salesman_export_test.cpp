// Salesmen to a workbook.
#include "platform/xls/xls_spreadsheet.h"
#include "tests/support/salesmen.h"

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
  const auto sheet = readXls(file);
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

/// Writes down what a workbook is given.
struct SheetJournal final : Spreadsheet {
  explicit SheetJournal(Texts& j) : journal(j) {}
  ~SheetJournal() override { journal.push_back("quit"); }
  struct Sheet final : WorksheetWriter {
    explicit Sheet(Texts& j) : journal(j) {}
    void setText(int row, int column, std::string_view text) override {
      if (column < 250) return;
      note("text", {row, column}, text);
    }
    void setBold(const CellRange& r) override {
      note("bold", {r.firstRow, r.firstColumn, r.lastRow, r.lastColumn});
    }
    void addListValidation(const CellRange& r, std::string_view source) override {
      note("list", {r.firstRow, r.firstColumn, r.lastRow, r.lastColumn}, source);
    }
    void setColumnWidth(int number, double characters) override {
      note("width", {number, static_cast<int>(characters)});
    }
    void hideColumn(int number) override { note("hide", {number}); }
    void autoFit(int first, int last) override { note("fit", {first, last}); }
    void saveAs(std::string_view path) override { note("save", {}, path); }
    void note(std::string line, std::initializer_list<int> numbers, std::string_view text = {}) {
      for (const int number : numbers) line += " " + std::to_string(number);
      if (!text.empty()) line.append(" ").append(text);
      journal.push_back(line);
    }
    Texts& journal;
  };
  std::unique_ptr<WorksheetReader> open(std::string_view) override { return nullptr; }
  std::unique_ptr<WorksheetWriter> add() override { return std::make_unique<Sheet>(journal); }
  Texts& journal;
};

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

TEST_CASE("what the workbook is given") {
  TestWorld world;
  Texts journal;
  Platform platform = world.module.platform();
  platform.createSpreadsheet = [&] { return std::make_unique<SheetJournal>(journal); };
  Velk_ModOpnImp module(platform);
  const auto screen = std::make_shared<Velk_frmBankBranch_OpnImp>(module);
  world.database->answerRows("select", {});
  world.database->answerRows(handheldsQuery, {{std::string("Yes")}, {std::string("No")}});
  screen->initForm(world.database, nullptr);
  CHECK(screen->ExportToExcel("out.xls"));
  CHECK(journal == Texts{"bold 1 1 1 8", "text 1 250 DSType", "list 2 6 1000 6 =$IP$2:$IP$1",
                         "width 6 30", "hide 250", "text 1 251 DSType", "text 2 251 Yes",
                         "text 3 251 No", "list 2 7 1000 7 =$IQ$2:$IQ$3", "width 7 30", "hide 251",
                         "fit 1 5", "save out.xls", "quit"});
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
