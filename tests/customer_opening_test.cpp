#include "opening/customer_opening.h"

#include "tests/support/test_world.h"

namespace velk {
namespace {

const std::string setupQuery = "SELECT TOP 1 OpeningDate FROM Setup";
const std::string existsQuery = "select count(*) from Customer where CustomerID=N'";

/// A call as one line: its name, then type and value of each parameter.
std::string described(const FakeCall& call) {
  std::string text = call.text;
  for (const FakeParameter& p : call.parameters) {
    text += "; " + std::to_string(p.type) + " " + toText(p.value);
  }
  return text;
}

/// The calls that a note and its account entry make; bill and balance have no sign.
Texts note(const std::string& kind, const std::string& code, const std::string& reference,
           const std::string& date, const std::string& bill, const std::string& balance) {
  return {"sp_insert_Cust" + kind + "Note; 200 " + code + "; 200 " + reference + "; 7 " + date +
              "; 5 " + bill + "; 5 " + balance + "; 200 ",
          "sp_acc_import_customeropeningbalance; 200 " + code + "; 5 " +
              (kind == "Credit" ? "-" : "") + balance};
}

struct Run {
  TestWorld world;
  std::shared_ptr<Velk_frmCustOpn_OpnImp> screen = world.openCustomerScreen();
  const Texts checkTheLog{"host 64: Check The Error Log " + world.logPath()};

  Run() { world.database->answerRows(existsQuery + "GONE", {{0}}); }

  EventResult import(const std::string& records) {
    world.view(*screen, "Customer ID,Reference,Date,Bill Amount,Balance\r\n" + records);
    world.database->calls.clear();
    return screen->cmdImport.userClick();
  }
  Texts posted() const {
    Texts found;
    for (const FakeCall& call : world.database->calls) {
      if (call.kind == CommandType::StoredProcedure) found.push_back(described(call));
    }
    return found;
  }
  bool screenIsEmpty() const {
    return screen->TxtFileName.value().empty() && screen->lstCust.rowCount() == 0 &&
           screen->lstCust.columnCount() == 7 && screen->lv.rowCount() == 0 &&
           screen->lv.columnCount() == 0 && !screen->cmdview.enabled() &&
           !screen->cmdImport.enabled() && screen->currentRow() == 0;
  }
};

TEST_CASE("what becomes of one record") {
  const std::string tooLate =
      "You cannot import for the date greater than 1st Transaction Date(01/04/2008) for Customer "
      "- C\n";
  const std::string tooBig = "Balance is greater than BillAmount for Customer - C\n";
  const std::string eve = "31/03/2008";
  const struct {
    std::string record;
    Texts posted;
    std::string log;
  } rows[] = {
      {"C,R-1,31/03/2008,100,50.5", note("Debit", "C", "R-1", eve, "100", "50.5"), ""},
      {"C,R-1,31/03/2008,-500,200", note("Credit", "C", "R-1", eve, "500", "200"), ""},
      {"C,,,100,-40", note("Debit", "C", "", eve, "100", "40"), ""},
      {"C,,,-1,-1", note("Credit", "C", "", eve, "1", "1"), ""},
      {"C,,,100,0", note("Debit", "C", "", eve, "100", "0"), ""},
      {"C,,,100,300", note("Debit", "C", "", eve, "100", "300"), tooBig},
      {"C,,,-100,300", note("Credit", "C", "", eve, "100", "300"), tooBig},
      {"C,,,0,5", {}, tooBig},
      {"C,,,abc,0", {}, ""},
      {"C,,, 12.5abc,1D1x", note("Debit", "C", "", eve, "12.5", "10"), ""},
      {" c , r ,,1,1", note("Debit", " c ", " r ", eve, "1", "1"), ""},
      {"O'Brien,\"a,b\",,1,1", note("Debit", "O'Brien", "ab", eve, "1", "1"), ""},
      {"GONE,,32/13/2008,1,9", {}, "Customer does not exist for code - GONE\n"},
      {"C,,1/4/2008,1,1", {}, tooLate},
      {"C,,2/4/2008,0,9", {}, tooLate},
      {"C,,32/13/2008,1,9", {}, "Invalid Date(32/13/2008) for Customer - C\n"},
      {"C,, ,1,1", {}, "Invalid Date( ) for Customer - C\n"},
      {"C,,3-jan-07 23:59,1,1", note("Debit", "C", "", "03/01/2007", "1", "1"), ""},
      {"C,,31/3,1,1", note("Debit", "C", "", eve, "1", "1"), ""},
  };
  for (const auto& row : rows) {
    CAPTURE(row.record);
    Run run;
    CHECK(run.import(row.record) == EventResult::Handled);
    CHECK(run.posted() == row.posted);
    CHECK(run.world.log() == row.log);
    CHECK(run.world.messages == (row.log.empty() ? Texts{} : run.checkTheLog));
    CHECK(run.screenIsEmpty());
  }
}

TEST_CASE("the calls of a run, in order, and the current row at each") {
  Run run;
  Texts calls;
  run.world.database->onCall = [&](const FakeCall& call) {
    calls.push_back(std::to_string(run.screen->currentRow()) + " " + described(call));
  };
  run.world.database->answers["sp_"] = {std::nullopt, FakeRows{}};
  run.import("A,,,1,1\r\nGONE,,,1,1\r\n\r\nB'x,,,-2,1");
  const Texts a = note("Debit", "A", "", "31/03/2008", "1", "1");
  const Texts b = note("Credit", "B'x", "", "31/03/2008", "2", "1");
  CHECK(calls == Texts{"0 " + setupQuery, "2 " + existsQuery + "A'", "2 " + a[0], "2 " + a[1],
                       "3 " + existsQuery + "GONE'", "4 " + existsQuery + "B'x'", "4 " + b[0],
                       "4 " + b[1]});
  CHECK(run.world.database->nextResults == 4);  // walked to the first open result
}

TEST_CASE("records without a mandatory value stop the run before anything is posted") {
  const std::pair<const char*, std::string> rows[] = {{"C,,,1,1\r\n,,,,", "Customer Id"},
                                                      {"C,,,1,\r\nC,,,,1", "Bill Amount"},
                                                      {"C,,,1,1\r\nC,,,1", "Balance"},
                                                      {"C", "Bill Amount"}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    Run run;
    CHECK(run.import(row.first) == EventResult::Handled);
    const std::string message = " is Mandatory.Its not been Mapped";
    CHECK(run.world.messages == Texts{"host 0: " + row.second + message});
    CHECK(run.world.database->calls.size() == 1);
    CHECK(run.world.log().empty());
    CHECK(run.screenIsEmpty());
  }
}

TEST_CASE("the first transaction date") {
  const struct {
    FakeRows rows;
    std::string shown, dayBefore;
  } rows[] = {{{}, "30/12/1899", "29/12/1899"},
              {{{std::string("31/03/2008")}}, "31/03/2008", "30/03/2008"},
              {{{dateFromCivil({2008, 3, 1})}}, "01/03/2008", "29/02/2008"}};
  for (const auto& row : rows) {
    CAPTURE(row.shown);
    Run run;
    run.world.database->answerRows(setupQuery, row.rows);
    run.import("C,,31/3/2008,1,1\r\nU,,,1,1");
    CHECK(run.world.log() == "You cannot import for the date greater than 1st Transaction Date(" +
                                 row.shown + ") for Customer - C\n");
    CHECK(run.posted() == note("Debit", "U", "", row.dayBefore, "1", "1"));
    CHECK(run.world.database->closed == 4);  // the colours, the date, two existence queries
  }
  Run run;  // one that can't be had ends the run at its start
  run.world.database->answerRows(setupQuery, {{Null()}});
  CHECK(run.import("C,,,1,1") == EventResult::Failed);
  CHECK(run.world.log() == "(94): Invalid use of Null\n");
  CHECK(run.world.messages == Texts{"box 16: Invalid use of Null"});
  CHECK(run.posted().empty());
  CHECK(run.screen->cmdImport.enabled());
}

TEST_CASE("existence queries that fail mean that there is no such customer") {
  const FakeResults replies[] = {
      {FakeRows{}}, {FakeRows{{Null()}}}, {FakeRows{{-1}}}, {std::nullopt}, {}};
  for (const FakeResults& reply : replies) {
    CAPTURE(&reply - replies);
    Run run;
    run.world.database->answers[existsQuery] = reply;
    if (reply.empty()) run.world.database->fail(existsQuery, ErrorNumber::CommandErrors, "quote");
    run.import("it's,,,1,1");
    CHECK(run.world.log() == "Customer does not exist for code - it's\n");
    CHECK(run.posted().empty());
  }
}

TEST_CASE("an error that no step traps ends the run where it is") {
  Run run;
  CHECK(run.import("A,,,1,1\r\nB,,,1e999,1\r\nC,,,1,1") == EventResult::Failed);
  const std::string text =
      "The import stopped at record 2: Overflow. Records before it are posted; importing this file "
      "again would post them twice.";
  CHECK(run.world.log() == "(6): " + text + "\n");
  CHECK(run.world.messages == Texts{"box 16: " + text});
  CHECK(run.posted().size() == 2);
  CHECK(run.screen->cmdImport.enabled());
  CHECK(run.screen->currentRow() == 0);

  run.screen->CmdBrowse.userClick();  // the list's records are gone, their count is not
  CHECK(run.screen->cmdImport.userClick() == EventResult::Failed);
  CHECK(run.world.messages.back() == "box 16: Index out of bounds");
}

TEST_CASE("what the user does while a message is open waits or is dropped") {
  Run run;
  run.world.database->fail("sp_acc", ErrorNumber::ProviderTimeout, "late");
  run.world.onMessage = [&] {
    CHECK(run.screen->cmdImport.userClick() == EventResult::Dropped);
    run.screen->userClose();
  };
  const std::weak_ptr<Form> watch = run.screen;
  CHECK(run.import("A,,,1,1\r\nGONE,,,1,1\r\nB,,,1,1") == EventResult::Handled);
  const std::string busy = "box 16: Database is busy, cannot establish connection";
  CHECK(run.world.messages == Texts{busy, busy, run.checkTheLog[0]});
  CHECK(run.posted().size() == 4);
  CHECK(run.screenIsEmpty());
  CHECK(run.world.shell.open().empty());
  run.screen.reset();
  CHECK(watch.expired());
}

}  // namespace
}  // namespace velk
