#include "opening/opening_import.h"

#include "tests/support/test_world.h"

namespace velk {
namespace {

const std::string setupQuery = "SELECT TOP 1 OpeningDate FROM Setup";

/// The kinds of opening import: what they name differently, and what they do differently.
struct Party {
  std::string name;  ///< as messages have it
  std::string lower;
  std::string procedure;  ///< as the names of note procedures have it
  std::string existsQuery;
  TestWorld::EntryPoint open;
  std::size_t fields;
  Texts completed;  ///< what each full pass says
  std::string checkTheLog;
  bool keepsRefused;
};

const Party customer{"Customer",
                     "customer",
                     "Cust",
                     "select count(*) from Customer where CustomerID=N'",
                     &Velk_ClsOpnImp::ImportCustomerOpening,
                     7,
                     {},
                     "host 64: Check The Error Log ",
                     false};
const Party vendorParty{"Vendor",
                        "vendor",
                        "Vendor",
                        "select count(*) from Vendors where VendorID='",
                        &Velk_ClsOpnImp::ImportVendorOpening,
                        6,
                        {"host 64: Import Successfull"},
                        "box 64: Check The Error Log",
                        true};
const Party* const parties[] = {&customer, &vendorParty};

struct Run {
  const Party& party;
  TestWorld world;
  std::shared_ptr<ImportScreen> screen = world.open(party.open);

  explicit Run(const Party& p) : party(p) {
    world.database->answerRows(party.existsQuery + "GONE", {{0}});
  }

  EventResult import(const std::string& records) {
    world.view(*screen, party.name + " ID,Reference,Date,Bill Amount,Balance\r\n" + records);
    world.database->calls.clear();
    return screen->cmdImport.userClick();
  }
  /// The calls that a note and its account entry make; bill and balance have no sign.
  Texts note(const std::string& kind, const std::string& code, const std::string& reference,
             const std::string& date, const std::string& bill, const std::string& balance) const {
    return {"sp_insert_" + party.procedure + kind + "Note; 200 " + code + "; 200 " + reference +
                "; 7 " + date + "; 5 " + bill + "; 5 " + balance + "; 200 ",
            "sp_acc_import_" + party.lower + "openingbalance; 200 " + code + "; 5 " +
                (kind == "Credit" ? "-" : "") + balance};
  }
  Texts posted() const { return world.database->procedureCalls(); }
  /// What a full pass says.
  Texts closing(bool logged) const {
    Texts texts = party.completed;
    if (logged) texts.push_back(party.checkTheLog + (party.keepsRefused ? "" : world.logPath()));
    return texts;
  }
  bool screenIsEmpty() const {
    return screen->TxtFileName.value().empty() && screen->mappingList.rowCount() == 0 &&
           screen->mappingList.columnCount() == party.fields && screen->lv.rowCount() == 0 &&
           screen->lv.columnCount() == 0 && !screen->cmdview.enabled() &&
           !screen->cmdImport.enabled() && screen->currentRow() == 0;
  }
};

TEST_CASE("what becomes of one record") {
  const std::string eve = "31/03/2008";
  for (const Party* const party : parties) {
    const auto note = [&](auto... texts) { return Run(*party).note(texts...); };
    const std::string who = " for " + party->name + " - C\n";
    const std::string tooLate =
        "You cannot import for the date greater than 1st Transaction Date(01/04/2008)" + who;
    const std::string tooBig = "Balance is greater than BillAmount" + who;
    const std::string unknown = party->name + " does not exist for code - GONE\n";
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
        {"C,,,100,-300", note("Debit", "C", "", eve, "100", "300"), tooBig},
        {"C,,,0,5", {}, tooBig},
        {"C,,,abc,0", {}, ""},
        {"C,,, 12.5abc,1D1x", note("Debit", "C", "", eve, "12.5", "10"), ""},
        {" c , r ,,1,1", note("Debit", " c ", " r ", eve, "1", "1"), ""},
        {"O'Brien,\"a,b\",,1,1", note("Debit", "O'Brien", "ab", eve, "1", "1"), ""},
        {"GONE,,32/13/2008,1,9", {}, unknown},
        {"C,,1/4/2008,1,1", {}, tooLate},
        {"C,,2/4/2008,0,9", {}, tooLate},
        {"C,,3-jan-07 23:59,1,1", note("Debit", "C", "", "03/01/2007", "1", "1"), ""},
        {"C,,31/3,1,1", note("Debit", "C", "", eve, "1", "1"), ""},
    };
    for (const auto& row : rows) {
      CAPTURE(party->name);
      CAPTURE(row.record);
      Run run(*party);
      CHECK(run.import(row.record) == EventResult::Handled);
      CHECK(run.posted() == row.posted);
      CHECK(run.world.log() == row.log);
      CHECK(run.world.messages == run.closing(!row.log.empty()));
      CHECK(run.screenIsEmpty());
    }
  }
}

TEST_CASE("a date that cannot be read refuses a customer's record and ends a vendors' run") {
  for (const std::string cell : {"31/02/2008", " ", "soon"}) {
    CAPTURE(cell);
    const std::string records = "A,,,1,1\r\nC,," + cell + ",1,9\r\nB,,,1,1";
    Run customers(customer);
    CHECK(customers.import(records) == EventResult::Handled);
    CHECK(customers.world.log() == "Invalid Date(" + cell + ") for Customer - C\n");
    CHECK(customers.posted().size() == 4);

    Run vendors(vendorParty);
    CHECK(vendors.import(records) == EventResult::Failed);
    CHECK(vendors.world.messages ==
          Texts{"box 16: The import stopped at record 2: Type mismatch: Invalid Date(" + cell +
                ") for Vendor - C. Records before it are posted; importing this file again would "
                "post them twice."});
    CHECK(vendors.posted() == vendors.note("Debit", "A", "", "31/03/2008", "1", "1"));
    CHECK(rowText(vendors.screen->mappingList, 3) == "C|||" + cell + "|1|9");
    CHECK(vendors.screen->cmdImport.enabled());
  }
  Run first(vendorParty);  // before the first record there is none
  first.import("C,,soon,1,1");
  CHECK(first.world.messages.at(0).find("Records before") == std::string::npos);
}

TEST_CASE("records without a mandatory value stop the run before anything is posted") {
  const std::pair<const char*, std::string> rows[] = {{"C,,,1,1\r\n,,,,", " Id"},
                                                      {"C,,,1,\r\nC,,,,1", "Bill Amount"},
                                                      {"C,,,1,1\r\nC,,,1", "Balance"},
                                                      {"C", "Bill Amount"}};
  for (const Party* const party : parties) {
    for (const auto& row : rows) {
      CAPTURE(party->name);
      CAPTURE(row.first);
      Run run(*party);
      CHECK(run.import(row.first) == EventResult::Handled);
      const std::string message = (party->keepsRefused ? "box 0: " : "host 0: ") +
                                  (row.second == " Id" ? party->name : "") + row.second +
                                  " is Mandatory.Its not been Mapped";
      CHECK(run.world.messages == Texts{message});
      CHECK(run.world.database->calls.size() == 1);
      CHECK(run.world.log().empty());
      CHECK(run.screenIsEmpty() == !party->keepsRefused);
      CHECK(run.screen->cmdImport.enabled() == party->keepsRefused);
      CHECK(run.screen->currentRow() == 0);
    }
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
    Run run(customer);
    run.world.database->answerRows(setupQuery, row.rows);
    run.import("C,,31/3/2008,1,1\r\nU,,,1,1");
    CHECK(run.world.log() == "You cannot import for the date greater than 1st Transaction Date(" +
                                 row.shown + ") for Customer - C\n");
    CHECK(run.posted() == run.note("Debit", "U", "", row.dayBefore, "1", "1"));
    CHECK(run.world.database->closed == 4);  // the colours, the date, two existence queries
  }
  Run timed(customer);  // one with a time of day: that of a record's date does not count
  timed.world.database->answerRows(setupQuery, {{Date{39538.75}}});
  timed.import("C,,31/3/2008 20:00,1,1\r\nU,,,1,1");
  CHECK(timed.world.log().empty());
  CHECK(timed.posted().at(0) == timed.note("Debit", "C", "", "31/03/2008", "1", "1")[0]);
  CHECK(timed.posted().at(2) == timed.note("Debit", "U", "", "30/03/2008 18:00:00", "1", "1")[0]);

  Run run(customer);  // one that can't be had ends the run at its start
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
    Run run(customer);
    run.world.database->answers[customer.existsQuery] = reply;
    if (reply.empty()) {
      run.world.database->fail(customer.existsQuery, ErrorNumber::CommandErrors, "quote");
    }
    run.import("it's,,,1,1");
    CHECK(run.world.log() == "Customer does not exist for code - it's\n");
    CHECK(run.posted().empty());
  }
  Run several(customer);  // a count above one is as good
  several.world.database->answerRows(customer.existsQuery, {{2}});
  several.import("C,,,1,1");
  CHECK(several.posted().size() == 2);
}

TEST_CASE("an error that no step traps ends the run where it is") {
  Run run(customer);
  CHECK(run.import("A,,,1,1\r\nB,,,1e999,1\r\nC,,,1,1") == EventResult::Failed);
  const std::string start = "The import stopped at record 2: Overflow";
  const std::string end =
      ". Records before it are posted; importing this file again would post them twice.";
  CHECK(run.world.log() == "(6): " + start + end + "\n");
  // The user is also told which cell it was.
  CHECK(run.world.messages ==
        Texts{"box 16: " + start + ": Bill Amount(1e999) for Customer - B" + end});
  CHECK(run.posted().size() == 2);
  CHECK(run.screen->cmdImport.enabled());
  CHECK(run.screen->currentRow() == 0);

  run.screen->CmdBrowse.userClick();  // the list's records are gone, their count is not
  CHECK(run.screen->cmdImport.userClick() == EventResult::Failed);
  CHECK(run.world.messages.back() == "box 48: The list has changed since View. Press View again.");
  CHECK(run.world.log().ends_with("(35600): Index out of bounds\n"));
}

TEST_CASE("records are told as posted where there are some before the one that ends the run") {
  struct Dry : ImportObserver {
    bool isDryRun() const override { return true; }
  } dry;
  const std::string posted =
      " Records before it are posted; importing this file again would post them twice.";
  const struct {
    std::string records;
    std::size_t before;  // in runs of the same file
    bool isDry;
    std::string record, more;
  } rows[] = {{"A,,,1e999,1", 0, false, "1", ""},
              {"A,,,1e999,1", 5, false, "6", posted},
              {"B,,,1,1\r\nA,,,1e999,1", 0, true, "2", ""}};
  for (const auto& row : rows) {
    Run run(customer);
    run.screen->run().setRecordsBefore(row.before);
    if (row.isDry) run.screen->run().setObserver(&dry);
    run.import(row.records);
    CHECK(run.world.messages ==
          Texts{"box 16: The import stopped at record " + row.record +
                ": Overflow: Bill Amount(1e999) for Customer - A." + row.more});
  }
}

TEST_CASE("an error behind the last record says that the records are posted") {
  Run run(vendorParty);
  run.world.host->failingKey = "Import Successfull";
  CHECK(run.import("A,,,1,1") == EventResult::Failed);
  CHECK(run.world.messages == Texts{"box 16: The import stopped at its end: ActiveX component "
                                    "can't create object. Records before it are posted; importing "
                                    "this file again would post them twice."});
}

TEST_CASE("what the user does while a message is open waits or is dropped") {
  for (const Party* const party : parties) {
    Run run(*party);
    run.world.database->fail("sp_acc", ErrorNumber::ProviderTimeout, "late");
    run.world.onMessage = [&] {
      CHECK(run.screen->cmdImport.userClick() == EventResult::Dropped);
      run.screen->unload();
    };
    const std::weak_ptr<Form> watch = run.screen;
    CHECK(run.import("A,,,1,1\r\nGONE,,,1,1\r\nB,,,1,1") == EventResult::Handled);
    const std::string busy = "box 16: Database is busy, cannot establish connection";
    Texts messages{busy, busy};
    for (const std::string& text : run.closing(true)) messages.push_back(text);
    CHECK(run.world.messages == messages);
    CHECK(run.posted().size() == 4);
    CHECK(run.screenIsEmpty());
    CHECK(run.world.shell.open().empty());
    run.screen.reset();
    CHECK(watch.expired());
  }
}

}  // namespace
}  // namespace velk
