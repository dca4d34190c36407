// Outcomes and the account from recorded calls, without a run.
#include <doctest/doctest.h>

#include <functional>

#include "apps/opnimp/audit/account.h"
#include "apps/opnimp/records/csv_records.h"

using namespace velk;

namespace {

/// Two records, and the calls that a faithful import makes for them.
struct Books {
  CsvRecords input{("Code,Bill,Bal\r\nC1,100,\"6,0\"\r\nC2,-5.5,2\r\n")};
  std::vector<FieldMapping> mapping{{"Customer ID", 0, "Code"}, {"Customer Name", {}, {}},
                                    {"Reference", {}, {}},      {"Date", {}, {}},
                                    {"Bill Amount", 1, "Bill"}, {"Balance", 2, "Bal"},
                                    {"Document Type", {}, {}}};
  std::vector<RecordedCall> calls{
      look(2), note(2, "sp_insert_CustDebitNote", "C1", 100, 60), entry(2, "C1", 60),
      look(3), note(3, "sp_insert_CustCreditNote", "C2", 5.5, 2), entry(3, "C2", -2)};
  long long screenRecords = 2;
  /// What the import says of each record.
  std::vector<RecordReport> said{postedWith(2), postedWith(2)};

  static RecordReport postedWith(std::size_t calls, std::size_t failed = 0) {
    return {RecordReport::Fate::Posted, false, {calls, failed}, {}};
  }

  static RecordedCall look(std::size_t row) {
    return {row, CallKind::Query, "select", {}, CallResult::Ok, {}};
  }
  static RecordedCall call(std::size_t row, std::string name, std::vector<Value> parameters) {
    return {row, CallKind::Procedure, name, std::move(parameters), CallResult::Ok, {}};
  }
  static RecordedCall note(std::size_t row, std::string name, std::string code, double bill,
                           double balance) {
    return call(row, name, {code, std::string(), Date{1}, bill, balance, std::string()});
  }
  static RecordedCall entry(std::size_t row, std::string code, double balance) {
    return call(row, "sp_acc_import_customeropeningbalance", {code, balance});
  }

  Account account() const {
    Traces traces;
    traces.records.resize(input.count());
    for (const RecordedCall& call : calls) {
      const bool within = call.row >= 2 && call.row - 2 < input.count();
      (within ? traces.records[call.row - 2].calls : traces.strays).push_back(&call);
    }
    for (std::size_t i = 0; i < said.size(); ++i) {
      traces.records[i].said = &said[i];
      traces.records[i].outcome = outcomeOf(traces.records[i]);
    }
    return drawUpAccount(
        {*findKind("customer-opening"), input, mapping, traces, screenRecords, true});
  }
};

}  // namespace

TEST_CASE("a faithful import adds up, with sums by side") {
  const Account account = Books().account();
  CHECK(account.addsUp());
  CHECK(account.count(Outcome::Posted) == 2);
  for (const Sums& sums : {account.file, account.notes}) {
    CHECK(sums.count == 2);
    CHECK(sums.billDebit == 100);
    CHECK(sums.billCredit == 5.5);
    CHECK(sums.balanceDebit == 60);
    CHECK(sums.balanceCredit == 2);
  }
  CHECK(account.entries.balanceDebit == 60);
  CHECK(account.entries.balanceCredit == 2);
}

TEST_CASE("an import that does anything else does not") {
  const struct {
    std::string_view what;
    std::function<void(Books&)> change;
  } rows[] = {
      {"another bill", [](Books& b) { b.calls[1].parameters[3] = 1000.0; }},
      {"another balance", [](Books& b) { b.calls[1].parameters[4] = 6.0; }},
      {"an entry of the wrong sign", [](Books& b) { b.calls[5].parameters[1] = 2.0; }},
      {"a debit note for a credit", [](Books& b) { b.calls[4].text = b.calls[1].text; }},
      {"a record posted twice", [](Books& b) { b.calls.push_back(b.calls[1]); }},
      {"no entry", [](Books& b) { b.calls.erase(b.calls.begin() + 2); }},
      {"records exchanged", [](Books& b) { std::swap(b.calls[1].row, b.calls[4].row); }},
      {"a record never begun",
       [](Books& b) {
         b.calls.erase(b.calls.begin() + 3, b.calls.end());
         b.said[1] = {};
       }},
      {"a record posted that was refused",
       [](Books& b) {
         ImportReport report(false);
         report.recordBegins(2);
         report.recordFound(Verdict::Refused, {Reason::UnknownParty, 0, "C2"}, "unknown");
         report.recordEnds({2, 0});
         b.said[1] = report.record(0);
       }},
      {"a record skipped that has an amount",
       [](Books& b) {
         b.calls.erase(b.calls.begin() + 4, b.calls.end());
         b.said[1] = {RecordReport::Fate::Skipped, false, {}, {}};
       }},
      {"another customer", [](Books& b) { b.calls[1].parameters[0] = std::string("C2"); }},
      {"note and entry exchanged", [](Books& b) { std::swap(b.calls[1], b.calls[2]); }},
      {"one call instead of two",
       [](Books& b) {
         b.calls.pop_back();
         b.said[1] = Books::postedWith(1);
       }},
      {"a record of which nothing is said",
       [](Books& b) { b.said[1].fate = RecordReport::Fate::Begun; }},
      {"a call that failed, which the import did not see",
       [](Books& b) { b.calls[5].result = CallResult::Failed; }},
      {"a call that the import did not make", [](Books& b) { b.said[1] = Books::postedWith(1); }},
      {"amounts exchanged",
       [](Books& b) { std::swap(b.calls[1].parameters[3], b.calls[4].parameters[3]); }},
      {"a row beyond the file", [](Books& b) { b.calls.push_back(Books::look(4)); }},
      {"a procedure for no record", [](Books& b) { b.calls.push_back(Books::entry(0, "C1", 1)); }},
      {"the screen counted otherwise", [](Books& b) { b.screenRecords = 1; }},
      {"a parameter is missing", [](Books& b) { b.calls[2].parameters.pop_back(); }},
  };
  for (const auto& row : rows) {
    CAPTURE(row.what);
    Books books;
    row.change(books);
    const Account account = books.account();
    CHECK_FALSE(account.addsUp());
    CHECK_FALSE(account.differences.empty());
  }
}

TEST_CASE("an account of master data counts, and holds calls against what the import says") {
  const RecordedCall bank = Books::call(2, "sp_insert_BankMaster", {});
  RecordedCall refused = bank;
  refused.result = CallResult::Failed;
  const RecordedCall branch = Books::call(2, "sp_insert_branch", {});
  const struct {
    std::string_view kind;
    std::vector<RecordedCall> calls;
    Posting said;
    std::size_t differences;
    Outcome outcome;
  } rows[] = {{"bank-branch", {bank, branch}, {2, 0}, 0, Outcome::Posted},
              {"bank-branch", {refused, branch}, {2, 1}, 0, Outcome::Partial},
              {"vendor", {refused}, {1, 1}, 0, Outcome::Failed},  // no account without a vendor
              {"bank-branch", {refused}, {1, 1}, 1, Outcome::Failed},
              {"bank-branch", {bank}, {2, 0}, 2, Outcome::Posted},
              {"bank-branch", {refused, branch}, {2, 0}, 1, Outcome::Partial}};
  for (const auto& row : rows) {
    const CsvRecords input("a,b,c,d\r\n V1 ,N,O'1,d\r\n");
    const RecordReport said = Books::postedWith(row.said.calls, row.said.failed);
    Traces traces;
    traces.records.resize(1);
    RecordTrace& trace = traces.records[0];
    for (const RecordedCall& call : row.calls) trace.calls.push_back(&call);
    trace.said = &said;
    trace.outcome = outcomeOf(trace);
    CHECK(trace.outcome == row.outcome);
    const Account account = drawUpAccount({*findKind(row.kind), input, {}, traces, 1, true});
    CHECK(account.differenceCount == row.differences);
  }
}
