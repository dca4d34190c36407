// Salesmen from workbooks, and the rules for their DS types.
#include "platform/spreadsheet/xls/compound_writer.h"
#include "platform/spreadsheet/xls/records.h"
#include "platform/spreadsheet/xls/xls_file.h"
#include "tests/support/memory_files.h"
#include "tests/support/salesmen.h"
#include "tests/support/workbook_seeds.h"

namespace velk {
namespace {

const std::string notYet = "Not Yet|Not Yet |Not Yet |Not Yet |Not Yet |Not Yet ";
const std::string mapped = "Salesman*|Address*|ResNumber*|MobNumber*|DSType*|HandHeld DS*";
const std::string invalidFile =
    "box 64: Unable to import, Invalid Excel file format [Import Salesman]";

std::string summary(int processed, int unprocessed) {
  return "host 64: Salesman Imported.\r\nProcessed : " + std::to_string(processed) +
         "\r\nUnProcessed : " + std::to_string(unprocessed) + "\r\n" +
         (unprocessed > 0 ? " Please check the error log." : "");
}

TEST_CASE("the rows that a workbook gives") {
  const struct {
    Texts sheet, list, messages;
  } rows[] = {
      {{" salesman |ADDRESS|resnumber|MobNumber|existing dstype|DSTYPE|HandHeld ds |more",
        " A |adr|1|2|x|Retail|YES|more", " \"B\"\"b\"||||x|\"Retail\"|"},
       {mapped, "A|adr|1|2|Retail|YES", "B\"b||||Retail|"},
       {}},
      // Column 5 alone keeps the data going, columns 6 and 7 alone do not.
      {{salesmanTitles, "A", "||||x", " | | | | |Retail|YES", "B"},
       {mapped, "A|||||", "|||||"},
       {}},
      {{salesmanTitles, "", "B"}, {"Not Yet "}, {"host 0: Unable to import, Data not found"}},
      {{salesmanTitles}, {"Not Yet "}, {"host 0: Unable to import, Data not found"}},
      {{"Address|Salesman|ResNumber|MobNumber|Existing DSType|DSType|HandHeld DS", "A"},
       {"Not Yet "},
       {invalidFile}},
      {{"Salesman|Address|ResNumber|MobNumber|DSType|HandHeld DS", "A"},
       {"Not Yet "},
       {invalidFile}},
      {{""}, {"Not Yet "}, {invalidFile}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.sheet);
    SalesmanScreen in;
    in.view(row.sheet);
    const bool loaded = row.messages.empty();
    CHECK(rowsOf(in.screen->lstCust) == (loaded ? row.list : Texts{notYet}));
    CHECK(in.screen->cmdImport.enabled() == loaded);
    CHECK((in.screen->lv.columnCount() > 0) == (row.messages != Texts{invalidFile}));
    if (loaded) CHECK(in.screen->RecordCount() == static_cast<int>(row.list.size()) - 1);
    CHECK(in.world.messages == row.messages);
    CHECK(in.world.log().empty());
  }
  SalesmanScreen typed;
  typed.view({salesmanTitles, "A"});
  typed.screen->TxtFileName.userText(" in.csv ");
  typed.screen->cmdview.userClick();
  CHECK(typed.world.messages.empty());
  CHECK(typed.screen->RecordCount() == 1);
}

TEST_CASE("files that are no workbooks, and a wrong caption in the database") {
  SalesmanScreen in;
  in.world.view(*in.screen, "Salesman,Address\r\n");
  CHECK_FALSE(in.screen->cmdImport.enabled());
  REQUIRE(in.world.messages.size() == 1);
  CHECK(in.world.messages.at(0).starts_with("box 16: Unable to import, The file is "));
  CHECK(in.world.log().starts_with(
      "(321): Velk_frmBankBranch_OpnImp : ImportExcelData - The file is "));

  const struct {
    FakeResults answer;
    std::string log;
  } rows[] = {{{FakeRows{{0}}}, ""},
              {{FakeRows{{std::string("text")}}}, ""},
              {{FakeRows{}}, "(3021): ImportSalesman - CheckForValidDSType : "},
              {{std::nullopt}, "(3704): ImportSalesman - CheckForValidDSType : "},
              {{FakeRows{{40000}}}, "(6): ImportSalesman - CheckForValidDSType : "}};
  for (const auto& row : rows) {
    CAPTURE(row.log);
    SalesmanScreen other;
    other.world.database->answers["sp_Check_DSCaption"] = row.answer;
    other.view({salesmanTitles, "A"});
    CHECK(other.world.database->procedureCalls() == Texts{"sp_Check_DSCaption; 200 DSType"});
    CHECK(other.world.messages == Texts{"box 64: DSCaption name mismatch [Vorel]"});
    CHECK(rowsOf(other.screen->lv) == Texts{"A|||||"});
    CHECK(rowsOf(other.screen->lstCust) == Texts{notYet});
    CHECK_FALSE(other.screen->cmdImport.enabled());
    CHECK(other.world.log().starts_with(row.log));
  }
  in.world.database->answers["sp_Check_DSCaption"] = {std::nullopt, FakeRows{{-1}}};
  in.view({salesmanTitles, "A"});
  CHECK(in.screen->cmdImport.enabled());
  in.view({salesmanTitles + "x", "B"});
  CHECK(rowsOf(in.screen->lstCust) == Texts{notYet});  // nothing of the file before
  in.view({salesmanTitles, "A"});
  CHECK(in.screen->cmdImport.enabled());
}

/// A workbook of these rows, and texts in column A that formulas would come to, by row.
std::string withFormulas(const Texts& rows, std::initializer_list<char> formulas) {
  using namespace std::literals;
  const std::string file = workbook(rows);
  std::string stream(xls::workbookStream(file).view());
  const std::string end = "\x0A\0\0\0"s;
  stream.resize(stream.rfind(end));
  for (const char row : formulas) {
    stream += "\x06\0\x17\0"s + static_cast<char>(row - 1) + "\0\0\0\0\0"s +
              "\3\0\0\0\0\0\xFF\xFF"s + "\0\0\0\0\0\0\1\0\1"s;
  }
  MemoryFiles files;
  xls::writeCompoundFile(*files.openAppend("book.xls"), stream + end);
  return files.contents["book.xls"];
}

TEST_CASE("what the preview of a workbook cannot show is told") {
  const std::string hidden =
      "box 48: The first worksheet, \"Old\", is the one that is read, and it is hidden.";
  const std::string uncalculated =
      "The workbook does not contain the results of 1 formula(s), the first in cell ";
  const std::string notFound = "host 0: Unable to import, Data not found";
  const std::string mismatch = "box 64: DSCaption name mismatch [Vorel]";
  const Texts three{salesmanTitles, "A", "", "C"};
  const std::string endedByFormula = withFormulas(three, {3});
  const struct {
    std::string file;
    Texts messages;  // how they begin
    int caption = 1;
  } rows[] = {{workbookSeed("poi_formulas.xls"), {hidden + "\r\n" + uncalculated + "B4: they are"}},
              {workbookSeed("writeexcel.xls"), {"box 48: " + uncalculated + "A14"}},
              {workbookSeed("poi.xls"), {}},
              {endedByFormula, {"box 48: " + uncalculated + "A3"}},
              // A View that is refused says why, and that alone.
              {workbookSeed("libreoffice.xls"), {invalidFile}},
              {withFormulas({salesmanTitles}, {2}), {notFound}},
              {workbookSeed("poi_formulas.xls"), {mismatch}, 0},
              {endedByFormula, {mismatch}, 0}};
  for (const auto& row : rows) {
    CAPTURE(row.messages);
    SalesmanScreen in;
    in.world.database->answerRows("sp_Check_DSCaption", {{row.caption}});
    in.world.view(*in.screen, row.file);
    const bool refused = row.messages == Texts{invalidFile} || row.messages == Texts{notFound} ||
                         row.messages == Texts{mismatch};
    CHECK(in.screen->cmdImport.enabled() == !refused);
    REQUIRE(in.world.messages.size() == row.messages.size());
    for (std::size_t i = 0; i < row.messages.size(); ++i) {
      CHECK_MESSAGE(in.world.messages[i].starts_with(row.messages[i]), in.world.messages[i]);
    }
  }
}

TEST_CASE("salesmen as they are posted") {
  const struct {
    std::string record, master, types;
  } rows[] = {
      {" A'b |adr|020|98|Old|Retail|YES", "A'b; 200 adr; 200 020; 200 98",
       "Retail; 200 HandHeld DS; 200 YES"},
      {"A|||||Retail|NO", "A; 200 ; 200 ; 200 ", "Retail; 200 HandHeld DS; 200 NO"},
      {"A|||||Retail|Yes", "A; 200 ; 200 ; 200 ", "Retail; 200 HandHeld DS; 200 No"},
      {"A|||||Retail|", "A; 200 ; 200 ; 200 ", "Retail; 200 HandHeld DS; 200 No"},
      // What is in quotes within quotes loses both.
      {"\"\"\" A \"\"\"|\"\"\" x \"\"\"|||| Retail |\"\"\" YES \"\"\"", "A; 200  x ; 200 ; 200 ",
       "Retail; 200 HandHeld DS; 200 YES"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.record);
    SalesmanScreen in;
    in.view({salesmanTitles, row.record});
    in.world.database->calls.clear();
    CHECK(in.import() == EventResult::Handled);
    const std::string name = row.master.substr(0, row.master.find(';'));
    CHECK(in.world.database->procedureCalls() ==
          Texts{"Velk_sp_checkDefault_DSTypeValue; 200 Retail",
                "sp_save_salesman; 200 " + row.master + "; 3 0; 200 ",
                "sp_save_DsType; 200 " + name + "; 200 DSType; 200 " + row.types});
    CHECK(in.world.messages == Texts{summary(1, 0)});
    CHECK(in.world.log().empty());
    CHECK(in.screen->TxtFileName.value().empty());
    CHECK_FALSE(in.screen->cmdImport.enabled());
  }
}

TEST_CASE("blanks around a type's quotes go before them") {
  SalesmanScreen in;
  in.view({salesmanTitles, "A||||| \"Retail\" |"});
  in.world.database->answerRows(
      "Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue = ' \"", {{1}});
  CHECK(in.import() == EventResult::Handled);
  CHECK(in.world.database->procedureCalls().back() ==
        "sp_save_DsType; 200 A; 200 DSType; 200 Retail; 200 HandHeld DS; 200 No");
}

TEST_CASE("salesmen that are refused one by one") {
  SalesmanScreen in;
  in.view({salesmanTitles, "A|||||Retail|", "B|||||Van|", "C|||||None|", "D|||||Old|", "E",
           "\"\"\"F\"\"\"|||||\"\"\" Retail\"\"\"|"});
  std::vector<std::size_t> rows;
  in.world.database->onCall = [&, before = in.world.database->onCall](const FakeCall& call) {
    before(call);
    rows.push_back(in.screen->currentRow());
  };
  in.world.database->calls.clear();
  CHECK(in.import() == EventResult::Handled);
  CHECK(in.world.messages == Texts{summary(1, 5)});
  CHECK(in.world.log() ==
        "B - Salesman(s) DsType Value is Not DefaultValue.\n"
        "C - Salesman(s) DSType not found in the DS Master : None\n"
        "D - Salesman(s) DSType is InActive in the DS Master : Old\n"
        "E - Salesman(s) DSType not found in the DS Master : \n"
        // Looked up with its quotes, told without them.
        "F - Salesman(s) DSType not found in the DS Master :  Retail\n");
  CHECK(rows == std::vector<std::size_t>{2, 2, 2, 2, 3, 4, 4, 5, 5, 6, 7, 7});
  CHECK(in.world.database->calls.at(1).text ==
        "Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue = 'Retail' "
        "and DSTypeCtlPos = 1 and OCGtype = (Select flag from tbl_velk_Configabstract where "
        "ScreenCode = 'OCGDS' and ScreenName ='OperationalCategoryGroup') ");
  CHECK(in.screen->dsTypes().notDefaultFound());
  CHECK(in.screen->dsTypes().notDefaultList() == ",B");
}

TEST_CASE("a type is active from 1 on, and each run forgets what the one before found") {
  const std::string typeQuery =
      "Select Active From DsType_Master Where DSTypeName = 'DSType' and DSTypeValue = 'Retail'";
  const std::pair<Value, int> rows[] = {{Null{}, 0}, {0.5, 0}, {1, 1},
                                        {2, 1},      {-1, 0},  {std::string("1"), 1}};
  SalesmanScreen in;
  for (const auto& row : rows) {
    CAPTURE(toText(row.first));
    in.world.database->answerRows(typeQuery, {{row.first}});
    in.view({salesmanTitles, "A|||||Retail|"});
    in.world.messages.clear();
    in.import();
    CHECK(in.world.messages == Texts{summary(row.second, 1 - row.second)});
  }
  for (const auto& [type, found] : {std::pair("Van", true), std::pair("Retail", false)}) {
    in.view({salesmanTitles, std::string("A|||||") + type + "|"});
    in.import();
    CHECK(in.screen->dsTypes().notDefaultFound() == found);
    CHECK(in.screen->dsTypes().notDefaultList() == (found ? ",A" : ""));
    CHECK(in.screen->dsTypes().notDefaultCount() == (found ? 1 : 0));
  }
}

TEST_CASE("a worksheet is read to its last row") {
  SalesmanScreen in;
  Texts rows(65536, "A");
  rows.front() = salesmanTitles;
  rows.back() = "Last";
  in.view(rows);
  CHECK(in.screen->RecordCount() == 65535);
  CHECK(rowText(in.screen->lstCust, 65536) == "Last|||||");
}

TEST_CASE("one salesman without a name stops the import before anything is saved") {
  SalesmanScreen in;
  in.view({salesmanTitles, "A|||||Retail|"});
  in.import();
  in.world.messages.clear();
  in.view({salesmanTitles, "A|||||Retail|", "|x||||Retail|"});
  in.world.database->calls.clear();
  CHECK(in.import() == EventResult::Handled);
  CHECK(in.world.messages == Texts{"host 64: Salesman Name  Not Mapped"});
  CHECK(in.world.database->calls.empty());
  CHECK(in.screen->cmdImport.enabled());
  in.screen->CmdClear.userClick();
  in.import();
  CHECK(in.world.messages.size() == 2);
  // Choosing a file empties the list: an import finds no row then.
  in.world.desktop.chooseFile(std::nullopt);
  in.screen->CmdBrowse.userClick();
  in.import();
  CHECK(in.world.messages.at(2) == summary(0, 0));
}

TEST_CASE("calls that fail") {
  const struct {
    std::string call, log;
    int processed;
    std::size_t calls;
  } rows[] = {
      {"Velk_sp_checkDefault_DSTypeValue",
       "(7): no\n(91): Velk_frmBankBranch_OpnImp : CheckForDefaultVal - Object variable or With "
       "block variable not "
       "set\n",
       1, 4},
      {"Select Active",
       "(7): Velk_frmBankBranch_OpnImp : IsvalidateDSType - no\n"
       "A - Salesman(s) DSType not found in the DS Master : Retail\n",
       0, 2},
      {"sp_save_salesman", "(7): no\n", 1, 4},
      {"sp_save_DsType", "(7): no\n", 1, 4},
  };
  for (const auto& row : rows) {
    CAPTURE(row.call);
    SalesmanScreen in;
    in.view({salesmanTitles, "A|||||Retail|"});
    in.world.database->calls.clear();
    in.world.database->fail(row.call, ErrorNumber::OutOfMemory, "no");
    in.import();
    CHECK(in.world.log() == row.log);
    CHECK(in.world.messages == Texts{summary(row.processed, 1 - row.processed)});
    CHECK(in.world.database->calls.size() == row.calls);
  }
}

TEST_CASE("an error that stops the run is logged under its own tag, and shown") {
  SalesmanScreen in;
  in.view({salesmanTitles, "A|||||Retail|", "B|||||Retail|"});
  in.world.database->onCall = [&](const FakeCall& call) {
    if (call.text == "sp_save_DsType") in.screen->mappingList.clearRows();
  };
  CHECK(in.import() == EventResult::Handled);
  CHECK(in.world.log() ==
        "(35600): Velk_frmBankBranch_OpnImp : ImportSalesmanMaster - Index out of bounds\n");
  CHECK(in.world.messages ==
        Texts{"box 48: The import stopped at record 2: The list has changed since View. Press "
              "View again. Records before it are posted."});
  CHECK(in.screen->cmdImport.enabled());
}

TEST_CASE("the list of salesmen whose type is no default value") {
  SalesmanScreen in;
  Velk_frmBankBranch_OpnImp& screen = *in.screen;
  std::string expected;
  for (int n = 1; n <= 23; ++n) {
    CHECK_FALSE(screen.dsTypes().CheckForDefaultVal("S" + std::to_string(n), "Van"));
    expected += (n % 11 == 0 ? ",\r\nS" : ",S") + std::to_string(n);
  }
  CHECK(screen.dsTypes().notDefaultList() == expected);
  CHECK(screen.dsTypes().notDefaultCount() == 1);
  in.world.database->calls.clear();
  CHECK(screen.dsTypes().CheckForDefaultVal("X", ""));
  CHECK(in.world.database->calls.empty());
  in.world.database->onCall = nullptr;
  const std::pair<FakeRows, bool> answers[] = {
      {{}, true}, {{{Null()}}, false}, {{{std::string("0.0x")}}, false}, {{{-1}}, true}};
  for (const auto& answer : answers) {
    in.world.database->answerRows("Velk_sp_checkDefault_DSTypeValue", answer.first);
    CHECK(screen.dsTypes().CheckForDefaultVal("X", "y") == answer.second);
  }
}

TEST_CASE("characters of a salesman's name") {
  const std::pair<const char*, bool> rows[] = {{"", true},    {"Az Za 09 &", true}, {"a-b", false},
                                               {"a.", false}, {"O'B", false},       {"a\tb", false},
                                               {"é", false},  {"@[`{", false},      {"/:", false}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK(DsTypeRules::FilterAlphaNumeric(row.first) == row.second);
  }
}

}  // namespace
}  // namespace velk
