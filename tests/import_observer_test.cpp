// What imports tell of each record and of the run.
#include "tests/support/test_world.h"

namespace velk {
namespace {

/// Writes down all that it is told, a word each with reason, field and text.
struct Listener final : ImportObserver {
  Texts told;

  static std::string described(const Finding& why) {
    return " " + std::to_string(static_cast<int>(why.reason)) + " " +
           (why.field ? std::to_string(*why.field) : "-") + " " + why.text;
  }
  void refused(const Finding& why, std::size_t row, std::string_view) override {
    told.push_back("refused " + std::to_string(row) + described(why));
  }
  void runStopped(const RuntimeError& error, std::string_view) override {
    told.push_back("stopped " + std::to_string(error.number()));
  }
  void runEnded() override { told.emplace_back("ended"); }
  void recordBegins(std::size_t row) override { told.push_back("begins " + std::to_string(row)); }
  void recordFound(Verdict verdict, const Finding& why, std::string_view) override {
    constexpr const char* words[] = {"no", "skip", "warn"};
    told.push_back(words[static_cast<int>(verdict)] + described(why));
  }
  void recordEnds(const Posting& posting) override {
    told.push_back("ends " + std::to_string(posting.calls) + "/" + std::to_string(posting.failed));
  }
};

std::string reason(Reason why) {
  return std::to_string(static_cast<int>(why));
}

TEST_CASE("what an import of opening balances tells of each record") {
  const struct {
    bool vendors;
    std::string record;
    Texts told;
  } rows[] = {
      {false, "C1,,,10,5", {"ends 2/0", "ended"}},
      {false, "X1,,,10,5", {"no " + reason(Reason::UnknownParty) + " 0 X1", "ends 0/0", "ended"}},
      {false, "C1,,x,10,5", {"no " + reason(Reason::DateUnreadable) + " 3 x", "ends 0/0", "ended"}},
      {false,
       "C1,,1/4/2008,10,5",
       {"no " + reason(Reason::DateTooLate) + " 3 1/4/2008", "ends 0/0", "ended"}},
      {false,
       "C1,,,1,5",
       {"warn " + reason(Reason::BalanceAboveBill) + " 5 5", "ends 2/0", "ended"}},
      {false, "C1,,,0,0", {"skip " + reason(Reason::ZeroAmount) + " 4 0", "ends 0/0", "ended"}},
      {true, "V1,,x,10,5", {"stopped 13"}},
      {true, "V1,bad,,10,5", {"ends 2/1", "ended"}},
  };
  for (const auto& row : rows) {
    CAPTURE(row.record);
    TestWorld world;
    world.database->answerRows("select count(*) from Customer where CustomerID=N'X", {{0}});
    if (row.record.find("bad") != std::string::npos) {
      world.database->fail("sp_insert_VendorDebitNote", ErrorNumber::IntegrityViolation, "no");
    }
    const auto screen = world.open(row.vendors ? &Velk_ClsOpnImp::ImportVendorOpening
                                               : &Velk_ClsOpnImp::ImportCustomerOpening);
    Listener listener;
    screen->run().setObserver(&listener);
    world.view(*screen, (row.vendors ? "Vendor" : "Customer") +
                            std::string(" ID,Reference,Date,Bill Amount,Balance\r\n") + row.record);
    screen->cmdImport.userClick();
    Texts expected = row.told;
    expected.insert(expected.begin(), "begins 2");
    CHECK(listener.told == expected);
  }
}

TEST_CASE("what refuses a run or a mapping is told with its row and field") {
  TestWorld world;
  const auto screen = world.openCustomerScreen();
  Listener listener;
  screen->run().setObserver(&listener);
  world.view(*screen, "Customer ID,Bill Amount,Balance\r\nC1,1,1\r\nC2,1,");
  screen->mappingList.userColumnClick(1);
  screen->lv.userColumnClick(2);
  screen->mappingList.userColumnClick(5);
  screen->cmdImport.userClick();
  CHECK(listener.told == Texts{"refused 0 " + reason(Reason::NoColumnChosen) + " 1 ",
                               "refused 0 " + reason(Reason::EmptyValues) + " 5 ",
                               "refused 3 " + reason(Reason::ValueMissing) + " 5 "});
}

}  // namespace
}  // namespace velk
