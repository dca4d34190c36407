// Banks, branches and vendors from files.
#include "masters/Velk_frmBankBranch_OpnImp.h"
#include "tests/support/test_world.h"

namespace velk {
namespace {

constexpr int bankType = 0;
constexpr int vendorType = 1;
const std::string masterTitles[] = {
    "Bank Code,Bank Name,Branch Code,Branch Name\r\n",
    "Vendor Code,Vendor Name,Address,Phone,Contact Person,Locality,Sale Type,TNGST,CST,Pan "
    "Number\r\n"};
const std::string completed = "host 64: Import Successfull";

struct MasterRun {
  TestWorld world;
  std::shared_ptr<ImportScreen> screen = world.open(&Velk_ClsOpnImp::ImportBankBranchOpening);

  MasterRun(int type, const std::string& content) {
    dynamic_cast<Velk_frmBankBranch_OpnImp&>(*screen).cboType.userChoose(type);
    world.view(*screen, content);
    world.database->calls.clear();
  }
  EventResult import() { return screen->cmdImport.userClick(); }
  Texts posted() const { return world.database->procedureCalls(); }
};

TEST_CASE("what refuses a file before anything is posted, and leaves the screen as it is") {
  const std::string wrong = "box 64: Incorrect file format";
  const auto mandatory = [](const char* field) {
    return std::string("host 64: ") + field + " is Mandatory.Its not been Mapped";
  };
  const struct {
    int type;
    std::string content, message;
  } rows[] = {
      {bankType, "Bank Code,Bank Name,Branch Code\r\n1,2,3", wrong},
      {bankType, masterTitles[bankType].substr(0, 43) + ",x\r\n1,2,3,4,5", wrong},
      {bankType, "Bank Code,Bank Name\rBranch Code,Branch Name\r\n1,2,3,4", wrong},
      {bankType, "\r\n1,2,3,4", wrong},
      {bankType, masterTitles[bankType] + "1,2,3,4\r\n,2,3,", mandatory("Bank Code")},
      {bankType, masterTitles[bankType] + "1,2,3,4\r\n1,,3,4", mandatory("Bank Name")},
      {bankType, masterTitles[bankType] + "1,2,3,4\r\n1,2,,", mandatory("Branch Code")},
      {bankType, masterTitles[bankType] + "1,2,3,", mandatory("Branch Name")},
      {vendorType, masterTitles[bankType] + "1,2,3,4", wrong},
      {vendorType, masterTitles[vendorType] + "1,2,,,,,,,,\r\n,2", mandatory("Vendor Code")},
      {vendorType, masterTitles[vendorType] + "1,2,,,,,,,,\r\n1", mandatory("Vendor Name")},
  };
  for (const auto& row : rows) {
    CAPTURE(row.content);
    MasterRun run(row.type, row.content);
    const Texts before = rowsOf(run.screen->mappingList);
    CHECK(run.import() == EventResult::Handled);
    CHECK(run.world.messages == Texts{row.message});
    CHECK(run.world.database->calls.empty());
    CHECK(rowsOf(run.screen->mappingList) == before);
    CHECK(run.screen->TxtFileName.value() == "in.csv");
    CHECK(run.screen->cmdImport.enabled());
    CHECK(run.screen->currentRow() == 0);
    CHECK(run.world.files.open == 0);
  }
}

TEST_CASE("calls that fail are passed over") {
  const std::string two = "1,2,3,4,5,6,7,8,9,0\r\n2,2,3,4,5,6,7,8,9,0";
  const struct {
    int type;
    std::string records, failing;
    std::size_t calls;
  } rows[] = {{bankType, "1,2,3,4\r\n5,6,7,8", "sp_insert_BankMaster", 4},
              {bankType, "1,2,3,4\r\n5,6,7,8", "sp_insert_branch", 4},
              {vendorType, two, "sp_insert_Vendors", 2},  // refused vendors get no account
              {vendorType, two, "sp_acc_importvendor", 4}};
  for (const auto& row : rows) {
    CAPTURE(row.failing);
    MasterRun run(row.type, masterTitles[row.type] + row.records);
    run.world.database->fail(row.failing, ErrorNumber::IntegrityViolation, "refused");
    CHECK(run.import() == EventResult::Handled);
    CHECK(run.posted().size() == row.calls);
    CHECK(run.world.messages == Texts{completed});
    CHECK(run.world.log() == "(-2147217873): refused\n(-2147217873): refused\n");
    CHECK(run.screen->TxtFileName.value().empty());
    CHECK(run.screen->mappingList.rowCount() + run.screen->lv.columnCount() == 0);
    CHECK(run.import() == EventResult::Dropped);
  }
  MasterRun memory(vendorType, masterTitles[vendorType] + two);
  memory.world.database->fail("sp_insert_Vendors", ErrorNumber::OutOfMemory, "none");
  memory.import();
  CHECK(memory.posted().size() == 2);  // an error whose number is positive is one, too
}

TEST_CASE("the type can't be changed while an import runs") {
  MasterRun run(bankType, masterTitles[bankType] + "1,2,3,4\r\n5,6,7,8");
  auto& screen = dynamic_cast<Velk_frmBankBranch_OpnImp&>(*run.screen);
  run.world.database->fail("sp_insert_branch", ErrorNumber::ProviderTimeout, "late");
  run.world.onMessage = [&] {
    CHECK(screen.cboType.userChoose(1) == EventResult::Dropped);
    CHECK(screen.type() == Velk_frmBankBranch_OpnImp::Type::BankBranch);
    if (run.world.messages.size() == 2) throw RuntimeError(ErrorNumber::CannotCreateObject);
  };
  run.import();
  const std::string busy = "box 16: Database is busy, cannot establish connection";
  CHECK(run.world.messages ==
        Texts{busy, busy, completed});  // a box that fails is passed over, too
  CHECK(run.posted().size() == 4);
}

TEST_CASE("a file that changed between View and Import") {
  const struct {
    std::optional<std::string> content;
    Texts messages;
    std::size_t calls;
  } rows[] = {
      {std::nullopt, {"box 53: File not found", "box 64: Incorrect file format"}, 0},
      {"a,b\r\n", {"box 64: Incorrect file format"}, 0},
      {"", {completed}, 2},
      {"a,b,c,d\r\n9,9,9,9", {completed}, 2},  // what was viewed is what is posted
  };
  for (const auto& row : rows) {
    MasterRun run(bankType, masterTitles[bankType] + "1,2,3,4");
    run.world.files.contents.erase("in.csv");
    if (row.content) run.world.files.contents["in.csv"] = *row.content;
    run.import();
    CHECK(run.world.messages == row.messages);
    CHECK(run.posted().size() == row.calls);
  }
}

TEST_CASE("an unexpected error is shown, not logged, and says where the run stopped") {
  MasterRun run(bankType, masterTitles[bankType] + "1,2,3,4\r\n5,6,7,8");
  run.world.database->onCall = [&](const FakeCall& call) {
    if (call.text == "sp_insert_branch") run.screen->mappingList.clearRows();
  };
  CHECK(run.import() == EventResult::Handled);
  CHECK(run.world.messages ==
        Texts{"box 48: The import stopped at record 2: The list has changed since View. Press "
              "View again. Records before it are posted."});
  CHECK(run.world.log().empty());
  CHECK(run.screen->cmdImport.enabled());
  CHECK(run.screen->currentRow() == 0);
  // One behind the last record leaves nothing there to be imported again.
  MasterRun whole(bankType, masterTitles[bankType] + "1,2,3,4");
  whole.world.onMessage = [&] {
    if (whole.world.messages.size() == 1) throw RuntimeError(ErrorNumber::CannotCreateObject);
  };
  whole.import();
  CHECK(whole.world.messages.size() == 2);
  CHECK(whole.screen->TxtFileName.value().empty());
}

}  // namespace
}  // namespace velk
