// The runner on each engine's sample company: one story, told by what it reports, logs and leaves
// in the tables. It is the embedded engine's, word for word.
#include <doctest/doctest.h>

#include <algorithm>
#include <regex>

#include "tests/support/checks.h"
#include "tests/support/database_calls.h"
#include "tests/support/engines.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/support/salesmen.h"

namespace velk {
namespace {

/// Every cell of every row, dates day first whatever the engine keeps them in; in an order of their
/// own where the query has none, as engines order texts otherwise.
std::string dump(OwnConnection& connection, std::string_view query, std::size_t columns) {
  Texts lines;
  for (const auto rows = connection.Execute(query); !rows->isEOF(); rows->MoveNext()) {
    std::string& line = lines.emplace_back();
    for (std::size_t i = 0; i < columns; ++i) {
      const Value cell = rows->field(i);
      static const std::regex date("\\d{4}-\\d\\d-\\d\\d");
      line += (std::regex_match(toText(cell), date) ? toText(toDate(cell, 0)) : toText(cell)) + "|";
    }
  }
  if (!contains(query, "order by")) std::ranges::sort(lines);
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string tablesOf(OwnConnection& connection) {
  std::string text;
  for (const std::string party : {"Customer", "Vendor"}) {
    for (const std::string kind : {"Debit", "Credit"}) {
      text += dump(connection,
                   "select " + party +
                       "ID, DocReference, DocumentDate, Amount, Balance, Narration "
                       "from " +
                       party + kind + "Note order by DocumentID",
                   6);
    }
    text += dump(connection,
                 "select " + party + "ID, OpeningBalance from " + party + "OpeningBalance", 2);
  }
  const std::pair<const char*, std::size_t> others[] = {
      {"select BankCode, BankName from BankMaster", 2},
      {"select BankCode, BranchCode, BranchName from BranchMaster", 3},
      {"select VendorID, VendorName, ContactPerson, Address, Phone, AlternateCode, Locality, "
       "SaleType,"
       " TNGST, CST, PanNumber, CityID, Remarks from Vendors",
       13},
      {"select VendorID, AccountName, GroupName from VendorAccount", 3},
      {"select Salesman_name, Address, ResidentialNUmber, MobileNumber, SkillLevel, Remarks from "
       "Salesman",
       6},
      {"select S.Salesman_name, D.DSTypeValue from DStype_Details T, Salesman S, DSType_Master D "
       "where "
       "T.SalesmanID = S.SalesmanID and T.DSTypeID = D.DSTypeID",
       2},
  };
  for (const auto& [query, columns] : others) text += dump(connection, query, columns);
  return text;
}

struct EngineWorld : RunnerWorld {
  explicit EngineWorld(const TestEngine& on, bool isOneByOne = false)
      : engine(on), company(on, folder.path("")), oneByOne(isOneByOne) {}

  const TestEngine& engine;
  EngineCompany company;
  const bool oneByOne;
  Texts story;

  /// An engine's own words differ.
  void tellLog() {
    static const std::regex words(R"(\((-2147\d+)\): .*)");
    story.push_back(std::regex_replace(folder.read("Error.log"), words, "($1)"));
    folder.write("Error.log", "");
  }
  /// Where a refused call may have kept a part, nobody knows that it did not.
  std::string asEmbedded(std::string outcomes) const {
    if (engine.refusesAsAWhole) return outcomes;
    return std::regex_replace(outcomes, std::regex("unknown"), "failed");
  }
  void tellImport(std::vector<std::string> arguments) {
    kind = arguments[0];
    const std::string file = arguments[1];
    arguments.erase(arguments.begin(), arguments.begin() + 2);
    arguments.insert(arguments.end(),
                     {"--accept", "all", "--json", "--database", company.database(), "--rejects",
                      folder.path("r" + std::to_string(story.size()))});
    if (oneByOne) arguments.emplace_back("--one-by-one");
    const Ran ran = import(file, arguments);
    CAPTURE(file);
    CAPTURE(ran.err);
    const Json report(ran.out);
    CHECK_MESSAGE(report.at("account.addsUp") == "true", ran.out);
    CHECK_FALSE(contains(ran.out + ran.err, "change-me"));
    story.push_back(file.substr(file.rfind('/') + 1) + " " + std::to_string(ran.status) + " " +
                    asEmbedded(report.outcomes()));
    tellLog();
  }
  void tellTables() { story.push_back(tablesOf(*company.connection())); }
};

const std::string sampleFiles = OPNIMP_SOURCE_DIR "/samples/";

Texts storyOn(const TestEngine& engine, bool oneByOne) {
  EngineWorld world(engine, oneByOne);
  // Codes beyond ASCII, and a reference that is too long, for the table and for any parameter.
  runCommand(*world.company.connection(),
             "INSERT INTO Customer (CustomerID, CustomerName) VALUES (?, ?)", {"ÄÖ1", "A"});
  const std::string texts = world.folder.write(
      "texts.csv", crlf({openingTitles,
                         "\xC4\xD6"
                         "1,A,R\xFC,,1,1",
                         "\xC4\xD6"
                         "2,A,R,,1,1",
                         "c001,A,,,0.1,0.1", "C001,A," + std::string(256, 'x') + ",,1,1",
                         "C001,A," + std::string(2049, 'x') + ",,1,1"}));
  const std::vector<std::string> files[] = {
      {"customer-opening", texts},
      {"customer-opening", sampleFiles + "customer_opening.csv"},
      {"customer-opening", sampleFiles + "codepage.csv"},
      {"customer-opening", sampleFiles + "sql_quotes.csv"},
      {"vendor-opening", sampleFiles + "vendor_opening.csv"},
      {"bank-branch", sampleFiles + "bank_branch.csv"},
      {"vendor", sampleFiles + "vendor.csv"},
      {"salesman", sampleFiles + "salesman.xls"}};
  for (std::vector<std::string> file : files) {
    file.emplace_back("--dry-run");
    world.tellImport(file);
  }
  world.tellTables();
  for (const auto& file : files) world.tellImport(file);
  world.tellTables();
  // What is there already is refused by the database, or added to.
  for (std::vector<std::string> file : files) {
    file.emplace_back("--again");
    world.tellImport(file);
  }
  world.tellTables();
  for (const char* last : {"C003,C,R9,,5,5", "C999,C,R9,,5,5"}) {
    const std::string file =
        world.folder.write("whole.csv", crlf({openingTitles, "C001,A,W1,,7,7", last}));
    world.tellImport({"customer-opening", file, "--all-or-nothing", "--again"});
    world.tellTables();
  }
  const std::string exported = world.folder.path("salesmen.xls");
  const Ran ran = world.run({"export", "salesman", exported, "--app-folder", world.folder.path(""),
                             "--database", world.company.database()});
  CHECK_MESSAGE(ran.status == 0, ran.err);
  // By name, as the engine orders names.
  Texts rows = sheetRows(exported);
  std::ranges::sort(rows);
  world.story.insert(world.story.end(), rows.begin(), rows.end());
  return world.story;
}

TEST_CASE("engines: one story on each") {
  const Texts expected = storyOn(testEngines().front(), true);
  for (const TestEngine& engine : testEngines()) {
    for (const bool oneByOne : {true, false}) {
      if (engine.isEmbedded() && oneByOne) continue;
      CAPTURE(std::string(engine.name));
      CAPTURE(oneByOne);
      const Texts told = storyOn(engine, oneByOne);
      REQUIRE(told.size() == expected.size());
      for (std::size_t i = 0; i < told.size(); ++i) CHECK(Texts{told[i]} == Texts{expected[i]});
    }
  }
}

TEST_CASE("engines: a run that was interrupted is resumed, and nothing is posted twice") {
  for (const TestEngine& engine : testEngines()) {
    CAPTURE(std::string(engine.name));
    EngineWorld world(engine);
    const std::string file = sampleFiles + "customer_opening.csv";
    world.surroundings.interrupted = [left = 8]() mutable { return left-- <= 0; };
    world.tellImport({"customer-opening", file});
    world.surroundings.interrupted = [] { return false; };
    CHECK(contains(world.story[0], " 5 posted posted "));
    CHECK(contains(world.story[0], "posted not-reached"));
    world.tellImport({"customer-opening", file, "--resume"});
    CHECK(world.company.ask("select count(*) from CustomerDebitNote") == "19");
    CHECK(world.company.ask("select count(*) from CustomerCreditNote") == "2");
    const Ran again = world.import(file, {"--database", world.company.database()});
    CHECK_MESSAGE(contains(again.out + again.err, "posted this file already"), again.out);
  }
}

/// Whatever it answers, and whatever a file has for it to answer.
TEST_CASE("engines: a note that answers the texts it was given, and fails behind them") {
  for (const TestEngine& engine : testEngines()) {
    if (std::string_view(engine.name) != "mariadb") continue;  // elsewhere its answer is dropped
    EngineWorld world(engine);
    for (const char* statement :
         {"DROP PROCEDURE sp_insert_CustDebitNote",
          "CREATE PROCEDURE sp_insert_CustDebitNote(party text, reference text, made datetime, "
          "amount double, balance double, narration text) BEGIN INSERT INTO CustomerDebitNote "
          "(CustomerID, DocReference, DocumentDate, Amount, Balance, Narration) VALUES (party, "
          "reference, made, amount, balance, ''); SELECT party, 0; SELECT reference, "
          "last_insert_id(); SELECT reference, 0; SELECT narration; IF amount = 30 THEN SIGNAL "
          "SQLSTATE '45000'; END IF; END",
          "GRANT EXECUTE ON PROCEDURE sp_insert_CustDebitNote TO opnimp_import"}) {
      world.company.connection()->Execute(statement);
    }
    const Ran ran =
        world.importLines({openingTitles, "C001,A,opnimp 1,,10,10", "C002,A,opnimp 2,,20,20",
                           "C003,A,opnimp 3,,30,30"},
                          {"--json", "--accept", "all", "--database", world.company.database()});
    const Json report(ran.out);
    CHECK_MESSAGE(report.outcomes() == "posted posted partial", ran.out);
    CHECK(report.at("records[2].calls[1].result") == "failed-late");
    CHECK(report.at("records[2].calls[2].result") == "ok");
    CHECK(dump(*world.company.connection(),
               "select CustomerID, OpeningBalance from CustomerOpeningBalance",
               2) == "C001|10|\nC002|20|\nC003|30|\n");
  }
}

}  // namespace
}  // namespace velk
