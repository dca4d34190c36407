#include "masters/Velk_frmBankBranch_OpnImp.h"

#include "tests/support/test_world.h"

namespace velk {
namespace {

const std::string bankUnmapped = "Not Yet|Not Yet |Not Yet |Not Yet ";

struct ShownMaster {
  TestWorld world;
  std::shared_ptr<Velk_frmBankBranch_OpnImp> screen =
      std::dynamic_pointer_cast<Velk_frmBankBranch_OpnImp>(
          world.open(&Velk_ClsOpnImp::ImportBankBranchOpening));
  ListView& fields = screen->lstCust;

  explicit ShownMaster(int type = 0, std::string_view content = "") {
    if (type != 0) screen->cboType.userChoose(type);
    if (!content.empty()) world.view(*screen, content);
  }
  void map(std::size_t fileColumn, std::size_t field) {
    screen->lv.userColumnClick(fileColumn);
    fields.userColumnClick(field);
  }
};

TEST_CASE("setting up the master screen") {
  TestWorld world;
  struct Observer : FormObserver {
    explicit Observer(Texts& e) : events(e) {}
    void controlChanged(Control& control, Property property) override {
      if (property == Property::Focus) events.push_back("focus " + control.name());
    }
    Texts& events;
  } observer(world.events);
  world.database->onCall = [&](const FakeCall& call) {
    world.events.push_back(call.text + (world.shell.open().empty() ? "" : ", shown"));
  };
  const auto screen = std::make_shared<Velk_frmBankBranch_OpnImp>(world.module);
  screen->setObserver(&observer);
  screen->initForm(world.database, {});
  CHECK(world.events == Texts{"3 Velk_frmBankBranch_OpnImp", "Select * From ColorSettings",
                              "2/Vorel/Label/Not Yet", "focus cboType",
                              "1 Velk_frmBankBranch_OpnImp true"});
  Texts names;
  for (const Control* control : screen->controls()) names.push_back(control->name());
  CHECK(names == Texts{"cmdExport", "FraBrowse", "cboType", "TxtFileName", "CmdBrowse", "cmdview",
                       "FraData", "lv", "lstCust", "Label1", "Label2", "CmdClear", "cmdExit",
                       "cmdImport", "CommonDialog1", "test", "subclr"});
  CHECK_FALSE(screen->cmdExport.visible());
  CHECK_FALSE(screen->cmdview.enabled());
  CHECK_FALSE(screen->cmdImport.enabled());
}

TEST_CASE("what each type shows and asks for") {
  const struct {
    int type;
    std::string caption, fields, dialog;
    int width;
  } rows[] = {
      {0, "Import - Bank & Branch", "Bank Code|Bank Name|Branch Code|Branch Name",
       "BankBranch Import/csv Files (*.csv)|*.csv/1//-1", 2805},
      {1, "Import - Vendor",
       "Vendor Code|Vendor Name|Address|Phone|Contact Person|Locality|Sale Type|TNGST|CST|Pan "
       "Number",
       "Vendor Import/csv files (*.csv)|*.csv/1//-1", 1245},
      {2, "Import - Salesman", "Salesman| Address| ResNumber| MobNumber|DSType|HandHeld DS",
       "Salesman Import/Excel Spreadsheets (*.xls)|*.xls/1//app/-1", 1440},
      {0, "Import - Bank & Branch", "Bank Code|Bank Name|Branch Code|Branch Name",
       "BankBranch Import/csv Files (*.csv)|*.csv/1//-1", 2805},
  };
  ShownMaster in;
  in.world.desktop.chooseFile(std::nullopt);
  for (const auto& row : rows) {
    CAPTURE(row.caption);
    in.screen->cboType.userChoose(row.type);
    CHECK(in.screen->text(Property::Caption) == row.caption);
    std::string shown;
    for (std::size_t i = 0; i < in.fields.columnCount(); ++i) {
      shown += (i > 0 ? "|" : "") + in.fields.title(i);
      CHECK(in.fields.width(i) == row.width);
    }
    CHECK(shown == row.fields);
    CHECK(in.screen->cmdExport.visible() == (row.type == 2));
    in.screen->CmdBrowse.userClick();
    std::string dialog;
    for (const Property asked : {Property::DialogTitle, Property::Filter, Property::FilterIndex,
                                 Property::InitDir, Property::CancelError}) {
      dialog += (dialog.empty() ? "" : "/") + toText(in.screen->CommonDialog1.get(asked));
    }
    CHECK(dialog == row.dialog);
    CHECK_FALSE(in.screen->cmdview.enabled());
  }
  CHECK(rowsOf(in.fields) == Texts{bankUnmapped});
  CHECK(in.world.log().empty());
}

TEST_CASE("mapping identical names on the master screen") {
  const std::string vendorUnmapped =
      "|Not Yet |Not Yet |Not Yet |Not Yet |Not Yet |Not Yet |Not Yet |Not Yet |";
  const struct {
    int type;
    const char* content;
    Texts mapped;
  } rows[] = {
      {0,
       " BANK CODE ,Branch Name,x\r\n1,2,3\r\n4,,\r\n",
       {" BANK CODE *|Not Yet |Not Yet |Branch Name*", "1|||2", "4|||"}},
      {0, "\r\na,b\r\nc,d\r\n", {bankUnmapped, "|||", "|||"}},
      {0,
       "Bank Code,Bank Name\r\n,2\r\n3,4\r\n",
       {"Not Yet|Bank Name*|Not Yet |Not Yet ", "|2||", "|4||"}},
      {1,
       "VENDOR CODE,Phone,Pan Number\r\n1,,\r\n2,3,4\r\n",
       {"VENDOR CODE*" + vendorUnmapped + "Pan Number*", "1|||||||||", "2|||||||||4"}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.content);
    ShownMaster in(row.type, row.content);
    CHECK(rowsOf(in.fields) == row.mapped);
    CHECK(in.screen->cmdImport.enabled());
    CHECK(in.world.events.back() == "1 Velk_frmBankBranch_OpnImp true");  // titles not translated
  }
}

TEST_CASE("mapping by hand and clearing on the master screen") {
  ShownMaster in(1, "all,gaps\r\n1,2\r\n3,\r\n");
  in.map(1, 1);
  in.map(1, 2);
  in.map(1, 9);
  in.map(0, 0);
  in.fields.userColumnClick(0);
  CHECK(in.world.messages == Texts{"host 0: The Field contains Null Value.So Cannot be mapped",
                                   "host 0: You have to select from list"});
  CHECK(rowText(in.fields, 1).starts_with("all*|Not Yet |gaps*|Not Yet |"));
  CHECK(rowText(in.fields, 2) == "1||2|||||||2");
  in.world.shell.onPopup = [&](Menu&) { return &in.screen->subclr; };
  in.fields.userMouseUp(MouseButton::Right, 10);
  in.fields.userMouseUp(MouseButton::Right, 2500);
  CHECK(rowText(in.fields, 1).starts_with("Not Yet|Not Yet |Not Yet |"));
  CHECK(rowText(in.fields, 2) == "|||||||||2");
  in.screen->CmdClear.userClick();
  CHECK(in.fields.rowCount() == 3);
  CHECK(rowText(in.fields, 1).ends_with("|Not Yet "));
  CHECK(rowText(in.fields, 2) == "|||||||||");
}

TEST_CASE("choosing a type drops the file and the mapping") {
  ShownMaster in(1, "Vendor Code\r\n1\r\n");
  in.screen->lv.userColumnClick(0);
  in.screen->cboType.userChoose(0);
  CHECK(in.screen->TxtFileName.value().empty());
  CHECK(in.fields.rowCount() + in.screen->lv.rowCount() + in.screen->lv.columnCount() == 0);
  CHECK_FALSE(in.screen->cmdview.enabled());
  CHECK_FALSE(in.screen->cmdImport.enabled());
  in.screen->CmdClear.userClick();
  CHECK(rowsOf(in.fields) == Texts{bankUnmapped});
  in.fields.userColumnClick(0);
  CHECK(in.world.messages == Texts{"host 0: You have to select from list"});
}

TEST_CASE("the master screen counts beyond 16 bits") {
  std::string content = "Bank Code\r\n";
  for (int i = 0; i < 40'000; ++i) content += "B\r\n";
  ShownMaster in(0, content);
  CHECK(in.screen->RecordCount() == 40'000);
  in.screen->CmdClear.userClick();
  CHECK(in.fields.rowCount() == 40'001);
  in.screen->cmdImport.userClick();
  CHECK(in.world.messages == Texts{"box 64: Incorrect file format"});
}

}  // namespace
}  // namespace velk
