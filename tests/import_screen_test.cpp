#include "mapping/import_screen.h"

#include "mapping/csv_table.h"
#include "shared/csv_text.h"
#include "tests/support/test_world.h"

namespace velk {
namespace {

using namespace std::string_literals;

const std::string selectFirst = "host 0: You have to select from customer list";
const std::string unmapped = "|Not Yet|Not Yet|Not Yet|Not Yet|Not Yet|Not Yet";
const std::string cleared = "Not Yet" + unmapped;
const std::string tag = "Velk_frmCustOpn_OpnImp : ";

struct Shown {
  TestWorld world;
  std::shared_ptr<Velk_frmCustOpn_OpnImp> screen = world.openCustomerScreen();
  ListView& lv = screen->lv;
  ListView& fields = screen->lstCust;

  explicit Shown(std::string_view content = "") {
    if (!content.empty()) world.view(*screen, content);
  }
  void map(std::size_t fileColumn, std::size_t field) {
    lv.userColumnClick(fileColumn);
    fields.userColumnClick(field);
  }
};

TEST_CASE("the steps of setting up, in order") {
  TestWorld world;
  world.host->captions["Customer Name"] = "Klant";
  world.database->onCall = [&](const FakeCall& call) {
    world.events.push_back(call.text + (world.shell.open().empty() ? "" : ", shown"));
  };
  world.host->onReady = [&](Form& form) {  // no event counts yet, but the window may be closed
    auto& screen = dynamic_cast<ImportScreen&>(form);
    CHECK(screen.CmdBrowse.userClick() == EventResult::Dropped);
    screen.unload();
    CHECK(screen.isOpen());
  };
  const auto screen = std::make_shared<Velk_frmCustOpn_OpnImp>(world.module, nullptr);
  screen->initForm(world.database, {});
  CHECK(world.events == Texts{"3 Velk_frmCustOpn_OpnImp", "2/Vorel/Label/Customer Name",
                              "2/Vorel/Label/Not Yet", "Select * From ColorSettings, shown",
                              "1 Velk_frmCustOpn_OpnImp true"});
  CHECK(world.shell.open().empty());
  CHECK(screen->text(Property::Caption) == "Import Customer Opening");
  Texts titles;
  for (std::size_t i = 0; i < 7; ++i) titles.push_back(screen->lstCust.title(i));
  CHECK(titles == Texts{"Customer ID", "Klant", "Reference", "Date", "Bill Amount", "Balance",
                        "Document Type"});
}

TEST_CASE("what the vendor screen does differently") {
  TestWorld world;
  const auto screen = world.open(&Velk_ClsOpnImp::ImportVendorOpening);
  CHECK(world.events ==
        Texts{"3 Velk_frmVenOpn_OpnImp", "2/Vorel/Label/Not Yet", "1 Velk_frmVenOpn_OpnImp true"});
  CHECK(screen->text(Property::Caption) == "Import VendorOpening");
  CHECK(screen->mappingList.name() == "lstVen");
  world.view(*screen, "vendor id,Vendor Name,Reference,Date,Bill Amount,Balance\r\n1,,3,4,5,6");
  CHECK(rowsOf(screen->mappingList) ==
        Texts{"vendor id*|Vendor Name*|Reference*|Date*|Bill Amount*|Balance*", "1||3|4|5|6"});
  screen->mappingList.userColumnClick(0);
  for (const std::size_t field : {1U, 3U}) {
    screen->lv.userColumnClick(1);
    screen->mappingList.userColumnClick(field);
  }
  CHECK(world.messages == Texts{"host 0: You have to select from Vendor list",
                                "host 0: The Field contains Null Value.So Cannot be mapped"});
}

TEST_CASE("a set-up that fails is logged and goes no further") {
  for (const std::string& key : {"Customer Name"s, "Not Yet"s, ""s}) {
    CAPTURE(key);
    TestWorld world;
    world.host->failingKey = key;
    world.hostFails = key.empty();
    std::make_shared<Velk_frmCustOpn_OpnImp>(world.module, nullptr)->initForm(world.database, {});
    CHECK(world.shell.open().empty());
    CHECK(world.log() == "(429): " + tag + "initForm - ActiveX component can't create object\n");
    CHECK(world.messages.empty());
  }
}

TEST_CASE("browsing") {
  Shown in;
  in.screen->CmdBrowse.userClick();
  CHECK(in.screen->CommonDialog1.text(Property::Filter) ==
        "CSV files (*.csv)|*.csv|All files (*.*)|*.*");
  CHECK(rowsOf(in.fields) == Texts{unmapped});
  CHECK_FALSE(in.screen->cmdview.enabled());
  CHECK_FALSE(in.screen->cmdImport.enabled());
  in.world.view(*in.screen, "Reference,x\r\n1,2\r\n");
  in.world.desktop.chooseFile("other.csv");
  in.screen->CmdBrowse.userClick();
  CHECK(rowsOf(in.fields) == Texts{unmapped});
  CHECK(in.lv.columnCount() == 0);
  CHECK(in.screen->cmdImport.enabled());
  in.world.desktop.chooseFile(std::nullopt);
  in.screen->CmdBrowse.userClick();  // cancelled: the file stays
  CHECK(in.screen->TxtFileName.value() == "other.csv");
  in.screen->emptyScreen();
  in.screen->CmdBrowse.userClick();
  CHECK(in.screen->TxtFileName.value().empty());
  CHECK_FALSE(in.screen->cmdview.enabled());
  CHECK(in.world.log().empty());
}

TEST_CASE("viewing and mapping identical names") {
  const struct {
    const char* content;
    Texts preview, mapped;
  } rows[] = {
      {"Date,Reference\r\n1/2/2008,\"a\"\"b\"\r\n\r\n2/2/2008",
       {"1/2/2008|a\"b", "2/2/2008|"},
       {"|Not Yet|Reference*|Date*|Not Yet|Not Yet|Not Yet", "||a\"b|1/2/2008|||",
        "|||2/2/2008|||"}},
      {" CUSTOMER ID ,,document type\r\nC,n", {"C|n|"}, {" CUSTOMER ID *" + unmapped, "C||||||"}},
      {"Balance,balance,\"Date\"\r\n1,,3\r\n4,5,6\r\n",
       {"1||3", "4|5|6"},
       {"|Not Yet|Not Yet|Not Yet|Not Yet|balance*|Not Yet", "||||||", "|||||5|"}},
      {"customer name,bill amount,\tdate\r\n",
       {},
       {"|customer name*|Not Yet|Not Yet|bill amount*|Not Yet|Not Yet"}},
      {"a\nb\r\nc\n\"d\"", {"c\n\"d\""}, {unmapped, "||||||"}},
      {"\r\nrow\r\n", {""}, {unmapped}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.content);
    const Shown in(row.content);
    CHECK(rowsOf(in.lv) == row.preview);
    CHECK(rowsOf(in.fields) == row.mapped);
    CHECK(in.screen->cmdImport.enabled());
    CHECK(in.world.log().empty());
  }
}

TEST_CASE("names are compared in the host's language; an error keeps what was mapped before") {
  Shown in;
  in.world.host->captions = {{"Klantcode", "CUSTOMER ID"}, {"Date", "Datum"}};
  in.world.host->failingKey = "x";
  in.world.events.clear();
  in.world.view(*in.screen, "Date, Klantcode ,x,Balance\r\n1,2,3,4");
  CHECK(in.world.events ==
        Texts{"4/Vorel/Label/Date", "4/Vorel/Label/Klantcode", "4/Vorel/Label/x"});
  CHECK(rowsOf(in.fields) == Texts{" Klantcode *" + unmapped, "2||||||"});
  CHECK(in.world.log() == "Error in Mapping Identical Fields\n");
  CHECK(in.screen->cmdImport.enabled());
}

TEST_CASE("a file that can't be viewed leaves nothing of the one before") {
  Shown in("Date\r\n1\r\n2");
  in.lv.userColumnClick(0);
  in.screen->TxtFileName.userText("gone.csv");
  in.screen->cmdview.userClick();
  CHECK(in.lv.columnCount() == 0);
  CHECK(in.lv.rowCount() == 0);
  CHECK(in.screen->RecordCount() == 0);
  CHECK_FALSE(in.screen->cmdImport.enabled());
  CHECK(in.world.log() == "Error in Opening the file gone.csv\n(9): " + tag +
                              "cmdview_Click - Subscript out of range\n");
  in.fields.userColumnClick(3);
  CHECK(in.world.messages ==
        Texts{"host 0: Check The Error Log " + in.world.logPath(), selectFirst});
  CHECK(in.screen->RecordCount() == 0);
}

TEST_CASE("mapping by clicks") {
  Shown in;
  Texts& messages = in.world.messages;
  in.fields.userColumnClick(0);
  CHECK(in.fields.rowCount() == 0);
  in.world.view(*in.screen, "first,gaps\r\n1,\r\n2,x\r\n");
  in.fields.setTitle(0, " Customer ID ");  // fields are found without the blanks around
  in.map(0, 0);
  CHECK(rowsOf(in.fields) == Texts{"first*" + unmapped, "1||||||", "2||||||"});
  in.fields.userColumnClick(1);  // the selection is used up
  CHECK(messages == Texts{selectFirst, selectFirst});
  for (const std::size_t field : {0u, 1u, 4u, 5u, 6u}) {
    CAPTURE(field);
    messages.clear();
    in.map(1, field);
    in.fields.userColumnClick(2);  // a refusal uses the selection up too
    CHECK(messages ==
          Texts{"host 0: The Field contains Null Value. So Cannot be mapped", selectFirst});
  }
  in.map(1, 2);
  in.map(1, 3);
  in.lv.userColumnClick(1);
  in.map(0, 2);  // the later click on a file column counts, the later mapping of a field too
  CHECK(rowsOf(in.fields) ==
        Texts{"first*|Not Yet|first*|gaps*|Not Yet|Not Yet|Not Yet", "1||1||||", "2||2|x|||"});
  CHECK(messages.size() == 2);
  CHECK(in.world.log().empty());
}

TEST_CASE("the chosen column is marked, and the lists say what to do next") {
  TestWorld world;
  const auto screen = world.openCustomerScreen();
  const auto says = [&](std::string_view preview, std::string_view mapping) {
    CHECK(screen->lv.text(Property::ToolTipText).starts_with(preview));
    CHECK(screen->mappingList.text(Property::ToolTipText).starts_with(mapping));
  };
  says("Browse for a file", "Browse for a file");
  world.view(*screen, "a,b\r\n1,2\r\n");
  says("Click the title", "To map a field, first");
  screen->lv.userColumnClick(1);
  CHECK(screen->lv.chosenColumn() == 1U);
  says("Now click", "Click the title of the field");
  screen->mappingList.userColumnClick(2);
  CHECK_FALSE(screen->lv.chosenColumn());
  says("Click the title", "To map a field, first");
  screen->lv.userColumnClick(0);
  screen->CmdBrowse.userClick();
  CHECK_FALSE(screen->lv.chosenColumn());
  says("Browse for a file", "Browse for a file");
}

TEST_CASE("clicks that fail are logged") {
  Shown in("Date\r\n1");
  in.lv.userColumnClick(1);
  in.lv.userColumnClick(0);
  in.screen->CmdBrowse.userClick();  // takes the file column away
  in.fields.userColumnClick(2);
  CHECK(in.world.log() == "(35600): " + tag +
                              "lv_ColumnClick - Index out of bounds\n"
                              "Error in Mapping the Field\n");
  CHECK(in.world.messages.empty());
}

TEST_CASE("clearing all and clearing one field") {
  Shown in("Customer ID,Date\r\n1,2\r\n3,4");
  in.world.shell.onPopup = [&](Menu& menu) {
    CHECK(&menu == &in.screen->test);
    return &in.screen->subclr;
  };
  in.fields.userMouseUp(MouseButton::Left, 10);
  in.fields.userMouseUp(MouseButton::Right, 99'999);
  CHECK(rowText(in.fields, 2) == "1|||2|||");
  in.fields.userMouseUp(MouseButton::Right, 10);
  const Texts onlyDate{"Not Yet|Not Yet|Not Yet|Date*|Not Yet|Not Yet|Not Yet", "|||2|||",
                       "|||4|||"};
  CHECK(rowsOf(in.fields) == onlyDate);
  in.screen->CmdClear.userClick();
  CHECK(rowsOf(in.fields) == Texts{cleared, "||||||", "||||||"});
  CHECK(in.screen->TxtFileName.value() == "in.csv");
  in.map(1, 3);
  CHECK(rowsOf(in.fields) == onlyDate);
  in.fields.clearRows();
  in.world.shell.onPopup = [](Menu&) -> Menu* {
    FAIL("there is nothing to clear");
    return nullptr;
  };
  in.fields.userMouseUp(MouseButton::Right, 10);
  CHECK(in.world.log().empty());
}

TEST_CASE("a file without records can be cleared and imported, without a word") {
  for (const char* const content : {"Date\r\n", "\r\n", "\r\n\r\n"}) {
    CAPTURE(content);
    Shown in(content);
    in.screen->CmdClear.userClick();
    CHECK(rowsOf(in.fields) == Texts{cleared});
    CHECK(in.screen->cmdImport.userClick() == EventResult::Handled);
    CHECK_FALSE(in.screen->cmdImport.enabled());
    CHECK(in.world.messages.empty());
    CHECK(in.world.log().empty());
  }
}

TEST_CASE("record counts at the end of their range") {
  const std::string clearing = "(6): " + tag + "CmdClear_Click - Overflow\n";
  const std::string viewing = "(6): " + tag + "cmdview_Click - Overflow\n";
  const auto tooMany = [](const std::string& records) {
    return "host 48: The file has " + records +
           " records; at most 32,766 can be imported in one go. Split the file.";
  };
  const struct {
    std::int32_t records, count;
    Texts messages;
    std::string log;
    std::string title = "x";
  } rows[] = {{32'766, 32'766, {"host 0: Customer Id is Mandatory.Its not been Mapped"}, ""},
              // Behind an empty first line one more fits, in no column.
              {32'767,
               32'766,
               {"host 0: You have to select from customer list",
                "host 0: Customer Id is Mandatory.Its not been Mapped"},
               "(35600): " + tag + "lv_ColumnClick - Index out of bounds\n",
               ""},
              {32'767, 0, {tooMany("32,767")}, viewing + clearing},
              {32'768, 0, {tooMany("32,768")}, viewing + "Error in Mapping the Field\n"}};
  for (const auto& row : rows) {
    CAPTURE(row.records);
    std::string content = row.title + "\r\n";
    for (std::int32_t i = 0; i < row.records; ++i) content += "r\r\n";
    Shown in(content);
    CHECK(in.screen->RecordCount() == row.count);
    in.map(0, 2);
    in.screen->CmdClear.userClick();
    CHECK(rowText(in.fields, 1) == cleared);
    in.screen->cmdImport.userClick();
    CHECK(in.world.messages == row.messages);
    CHECK(in.world.log() == row.log);
  }
}

TEST_CASE("a long file is counted, not kept, and one long line refuses it early") {
  std::string many = "x\r\n\r\n";
  for (int i = 0; i < 40'000; ++i) many += "r\r\n";
  struct Case {
    std::string content, message, log;
  };
  const Case rows[] = {
      {many,
       "The file has 40,000 records; at most 32,766 can be imported in one go. "
       "Split the file.",
       "(6): " + tag + "cmdview_Click - Overflow\n"},
      {"x\r\n" + std::string(maxLineLength + 1, 'r') + many,
       "A line of the file is longer than 16 MB: it is no list of records. Check how it "
       "was saved.",
       "(7): " + tag + "cmdview_Click - Out of memory\n"}};
  // Short, but with more cells than are kept.
  std::string wide(maxColumns - 1, ',');
  for (int i = 0; i < 40'000; ++i) wide += "\r\nr";
  const std::string tooMany = rows[0].message;
  for (const auto& row : {rows[0], rows[1], Case{wide, tooMany, rows[0].log}}) {
    Shown in("x\r\nr\r\n");
    in.world.files.contents["in.csv"] = row.content;
    if (row.content != wide) in.world.files.claimedLength = std::uint64_t{1} << 30;
    in.screen->cmdview.userClick();
    CHECK(in.world.messages == Texts{"host 48: " + row.message});
    CHECK(in.world.log() == row.log);
    CHECK(in.screen->lv.rowCount() == 0);
    CHECK_FALSE(in.screen->cmdImport.enabled());
  }
}

TEST_CASE("the column under the mouse") {
  const Shown in;  // the fields are 1500, 2700, 1500, 1300, 1500, 1500 and 0 twips wide
  const struct {
    int x, scroll;
    std::optional<std::size_t> column;
  } rows[] = {{0, 0, 0},       {1499, 0, 0},     {1500, 0, 1},       {9999, 0, 5},
              {10'000, 0, {}}, {-1, 0, {}},      {-1, 1, 0},         {0, 1500, 1},
              {8499, 1500, 5}, {8500, 1500, {}}, {0x7FFFFFFF, 9, {}}};
  for (const auto& row : rows) {
    CAPTURE(row.x);
    CAPTURE(row.scroll);
    in.fields.userScroll(row.scroll);
    CHECK(ImportScreen::GetColumnUnderMouse(in.fields, row.x) == row.column);
  }
}

TEST_CASE("keys") {
  Shown in;
  in.world.events.clear();
  const std::pair<std::int16_t, std::int16_t> dead[] = {{115, 0}, {115, 3}, {115, 6}, {114, 2}};
  for (const auto& key : dead) in.screen->userKeyDown(key.first, key.second);
  CHECK(in.screen->isOpen());
  in.screen->userKeyDown(0, 0);
  CHECK(in.world.log() ==
        "(438): " + tag + "Form_KeyDown - Object doesn't support this property or method\n");
  in.world.host->hasMainWindow = true;
  in.screen->userKeyDown(0, 2);
  CHECK(in.world.events == Texts{"menu 0"});
  in.screen->userKeyDown(115, 2);
  CHECK_FALSE(in.screen->isOpen());
}

}  // namespace
}  // namespace velk
