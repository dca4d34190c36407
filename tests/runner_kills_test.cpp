// Imports that are killed at any moment, and taken up: the database is what one run makes that
// nobody disturbs, apart from a record that is named as in doubt.
#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "tests/support/engines.h"
#include "tests/support/program.h"
#include "tests/support/salesmen.h"

namespace velk {
namespace {

constexpr int records = 40;

/// The key of a record, such as "K07", in each of its facts; %k in what follows.
std::string keyOf(int record) {
  return (record < 10 ? "K0" : "K") + std::to_string(record);
}

struct Killed {
  const char* kind;
  std::string titles;
  std::string record;  // %n: its number, which is its amount, too
  Texts facts;         // queries for what it makes
  std::string sum;     // query for what its amount goes into; empty: nothing
};

const Killed imports[] = {
    {"customer-opening",
     std::string(openingTitles),
     "C001,N,%k,03/03/2008,%n,%n",
     {"select DocReference, CustomerID, Amount, Balance from CustomerDebitNote"},
     "select OpeningBalance from CustomerOpeningBalance where CustomerID = 'C001'"},
    {"vendor-opening",
     "Vendor ID,Vendor Name,Reference,Date,Bill Amount,Balance",
     "V01,N,%k,03/03/2008,%n,%n",
     {"select DocReference, VendorID, Amount, Balance from VendorCreditNote",
      "select DocReference, VendorID, Amount, Balance from VendorDebitNote"},
     "select OpeningBalance from VendorOpeningBalance where VendorID = 'V01'"},
    {"bank-branch",
     std::string(bankTitles),
     "%k,Bank,%k,Branch",
     {"select BankCode, BankName from BankMaster",
      "select BankCode, BranchCode, BranchName from BranchMaster"},
     ""},
    {"vendor",
     std::string(vendorTitles),
     "%k,One,,,,Local,First Sales,,,",
     {"select VendorID, VendorName from Vendors",
      "select VendorID, AccountName from VendorAccount"},
     ""},
    {"salesman",
     salesmanTitles,
     "%k|||||Retail|YES",
     {"select Salesman_name from Salesman",
      "select Salesman_name, DSTypeValue from Salesman join DStype_Details on "
      "Salesman.SalesmanID = DStype_Details.SalesmanID join DSType_Master on "
      "DStype_Details.DSTypeID = DSType_Master.DSTypeID"},
     ""}};

std::string filled(std::string text, int record) {
  for (std::size_t at; (at = text.find('%')) != std::string::npos;) {
    text.replace(at, 2, text[at + 1] == 'k' ? keyOf(record) : std::to_string(record));
  }
  return text;
}

std::string writeInput(const TemporaryFolder& folder, const Killed& import) {
  Texts rows{import.titles};
  for (int record = 1; record <= records; ++record) rows.push_back(filled(import.record, record));
  if (import.titles == salesmanTitles) return folder.write("in.xls", workbook(rows));
  std::string text;
  for (const std::string& row : rows) text += row + "\r\n";
  return folder.write("in.csv", text);
}

/// A run in a folder and a company of its own.
struct KilledRun {
  KilledRun(const Killed& of, const TestEngine& engine)
      : import(of), company(engine, folder.path("")), file(writeInput(folder, of)) {}

  const Killed& import;
  TemporaryFolder folder;
  EngineCompany company;
  std::string file;

  Ran run(const Texts& more, std::optional<std::chrono::microseconds> killedAfter = {}) const {
    std::vector<std::string> args{"import",         import.kind,  file,
                                  "--accept",       "all",        "--app-folder",
                                  folder.path("."), "--database", company.database()};
    args.insert(args.end(), more.begin(), more.end());
    return runProgram(folder, args, {}, killedAfter);
  }

  /// What the records have made.
  Texts facts() const {
    Texts found;
    for (const std::string& query : import.facts) {
      const auto rows = company.connection()->Execute(query);
      for (; !rows->isEOF(); rows->MoveNext()) {
        std::string fact = query;
        const auto add = [&](std::size_t field) { fact += "|" + toText(rows->field(field)); };
        for (std::size_t i = 0; errorOf([&] { add(i); }) == 0; ++i) continue;
        found.push_back(fact);
      }
    }
    std::ranges::sort(found);
    return found;
  }
  double sum() const { return import.sum.empty() ? 0 : toDouble(Value(company.ask(import.sum))); }
};

/// The record that is named as in doubt; 0 for none.
int doubtfulOf(const KilledRun& run) {
  int doubtful = 0;
  std::string named;
  if (run.folder.has("r.csv.check.csv")) named = run.folder.read("r.csv.check.csv");
  if (run.folder.has("r.xls.check.xls")) {
    for (const std::string& row : sheetRows(run.folder.path("r.xls.check.xls")))
      named += row + "\n";
  }
  for (int record = 1; record <= records; ++record) {
    if (!contains(named, keyOf(record))) continue;
    CHECK(doubtful == 0);
    doubtful = record;
  }
  return doubtful;
}

Texts without(Texts facts, const std::string& key) {
  if (!key.empty())
    std::erase_if(facts, [&](const std::string& fact) { return contains(fact, key); });
  return facts;
}

/// What a run has made that nobody disturbed, and in which time.
struct Usual {
  explicit Usual(const KilledRun& run) {
    const auto start = std::chrono::steady_clock::now();
    CHECK(run.run({}).status == 0);
    took = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                                 start);
    facts = run.facts();
    sum = run.sum();
  }

  std::chrono::microseconds took;
  Texts facts;
  double sum;
};

/// Answers whether the run was killed between its first record and its end.
bool killAndResume(const KilledRun& killed, const Usual& usual, std::chrono::microseconds after) {
  killed.run({}, after);
  const std::string rejects = killed.folder.path(killed.file.ends_with(".xls") ? "r.xls" : "r.csv");
  Ran resumed = killed.run({"--resume", "--rejects", rejects});
  const bool midway = resumed.status <= 1;
  if (contains(resumed.err, "the journal has no run of")) resumed = killed.run({});
  // Killed at its last record, the run left nothing to go on with, but perhaps that in doubt.
  if (contains(resumed.err, "reached all records")) {
    runProgram(killed.folder, {"rejects", "1", rejects});
  }
  CAPTURE(resumed.out);
  CAPTURE(resumed.err);
  CHECK((resumed.status <= 1 || resumed.status == 3));
  const int doubtful = doubtfulOf(killed);
  CAPTURE(doubtful);
  const std::string but = doubtful == 0 ? "" : keyOf(doubtful);
  CHECK(without(killed.facts(), but) == without(usual.facts, but));
  const double difference = usual.sum - killed.sum();
  CHECK((difference == 0 || difference == doubtful));
  return midway;
}

/// One of so many is killed between its first record and its end.
constexpr int enoughRounds = 30;

int roundsOf(const TestEngine& engine, const Killed& import) {
  if (engine.isEmbedded()) return triesAll() ? 300 : OPNIMP_SANITIZED ? 5 : enoughRounds;
  if (triesAll()) return 50;
  return &import == &imports[0] ? 2 : 0;  // on a server each takes a while
}

}  // namespace

TEST_CASE("a run killed at any moment is taken up, and one record is in doubt at most") {
  const unsigned seed = std::random_device()();
  std::mt19937 random{seed};
  MESSAGE("seed " << seed);
  for (const TestEngine& engine : testEngines()) {
    CAPTURE(std::string(engine.name));
    for (const Killed& import : imports) {
      const int rounds = roundsOf(engine, import);
      if (rounds == 0) continue;
      CAPTURE(std::string(import.kind));
      const Usual usual(KilledRun(import, engine));
      std::uniform_int_distribution<long long> moment(0, usual.took.count());
      int midway = 0;
      // A busy machine is late with each kill: some more rounds hit the middle then.
      const int most = rounds < enoughRounds ? rounds : 5 * rounds;
      for (int round = 0; round < (midway == 0 ? most : rounds); ++round) {
        CAPTURE(round);
        const std::chrono::microseconds after(moment(random));
        if (killAndResume(KilledRun(import, engine), usual, after)) ++midway;
      }
      CHECK((midway > 0 || rounds < enoughRounds));
    }
  }
}

}  // namespace velk
