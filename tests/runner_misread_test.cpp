// Files that would be posted otherwise than they are written: refused with each finding, in the
// preview, too; imported as they are read when that is accepted.
#include <doctest/doctest.h>

#include "apps/opnimp/warnings/warnings.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

/// A file of two records, the first being well.
struct Misread {
  std::string_view titles, first, second;
  std::string_view code;  ///< of the only harmful warning
  std::string_view field, text, readAs;
  std::string_view outcomes = "posted posted-as-read";
};

const Misread customers[] = {
    // Amounts
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,,(500.00),500.00", "amount-in-parentheses",
     "Bill Amount", "(500.00)", "0, and the record is skipped", "posted skipped-not-a-number"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,,$500.00,0", "amount-currency", "Bill Amount",
     "$500.00", "0, and the record is skipped", "posted skipped-not-a-number"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,,500.00-,500.00", "amount-trailing-minus",
     "Bill Amount", "500.00-", "500"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,,99999,\"500,00\"", "amount-decimal-comma",
     "Balance", "500,00", "50000"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,,1,250.00,250.00", "long-lines", "null",
     "C002,,R2,,1,250.00,250.00",
     R"(Customer ID "C002", Customer Name nothing, Reference "R2", Date nothing, Bill Amount "1", Balance "250.00")"},
    {"Customer ID,Reference,Bill Amount,Balance,,", "C001,R1,1,1,,", "C002,R2,500,300.00,500,300",
     "long-lines", "null", "C002,R2,500,300.00,500,300",
     R"(Customer ID "C002", Reference "R2", Bill Amount "500", Balance "300.00")"},
    {"Customer ID,Bill Amount,Balance,Reference", "C001,1,1,R1", "C002,12,000.00,R2",
     "split-amount", "null", "C002,12,000.00,R2",
     R"(Customer ID "C002", Reference "R2", Bill Amount "12", Balance "000.00")"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,,500,-20", "opposite-signs", "Balance", "-20", "20"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,,0,(20)", "amount-in-parentheses", "Balance", "(20)",
     "0, and the record is skipped", "posted skipped-not-a-number"},
    // Texts
    {openingTitles, "C001,,R1,,1,1", "C002,,Caf\xC3\xA9,,1,1", "utf-8", "Reference", "Caf\xC3\xA9",
     "\"Caf\xC3\x83\xC2\xA9\""},
    {openingTitles, "C001,,R1,,1,1", "C002 ,,R2,,1,1", "blanks-around-code", "Customer ID", "C002 ",
     "\"C002 \", blanks included", "posted rejected"},
    {openingTitles, "C001,,R1,,1,1", "C002,,\"R,2\",,1,1", "quoted-commas", "Reference", "R,2",
     "\"R2\""},
    {openingTitles, "C001,,R1,,1,1", "C002,,\"R2\" ,,1,1", "leading-quote", "Reference", "\"R2\" ",
     "\"R2\"\""},
    // Dates
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,01/04/35,1,1", "date-long-past", "Date", "01/04/35",
     "01/04/1935"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,31/12/1899,1,1", "date-long-past", "Date",
     "31/12/1899", "31/12/1899"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,31/03,1,1", "date-without-year", "Date", "31/03",
     "31/03/2008"},
    {openingTitles, "C001,,R1,,1,1", "C002,,R2,Feb 2008,1,1", "date-without-day", "Date",
     "Feb 2008", "01/02/2008"},
    {openingTitles, "C001,,R1,03/25/2008,1,1", "C002,,R2,03/02/2008,1,1", "date-order-uncertain",
     "Date", "03/02/2008", "03/02/2008"},
    // Columns
    {"Customer ID,Bill Date,Bill Amount,Balance", "C001,,1,1", "C002,03/03/2008,1,1",
     "column-not-mapped", "Bill Date", "03/03/2008", "nothing: the document gets the default date"},
    {"Customer ID,Raised,Bill Amount,Balance", "C001,,1,1", "C002,03/03/2008,1,1",
     "column-not-mapped", "Raised", "03/03/2008", "nothing: the document gets the default date"},
    {"Customer ID,Bill No.,Bill Amount,Balance", "C001,,1,1", "C002,B-7,1,1", "column-not-mapped",
     "Bill No.", "B-7", "nothing: the document gets no reference"},
    {"Customer ID,Balance,Bill Amount,balance", "C001,1,1,1", "C002,2,1,1", "column-twice",
     "Balance", "2", "\"1\""},
    // Rows
    {openingTitles, "C001,,R1,,1,1", "C001,,R1,,1,1", "equal-rows", "null", "C001,,R1,,1,1",
     "the row of line 2 once more"},
    {openingTitles, "C001,,,13/03/2008,250,250.00", "c001,X, ,13-3-08,250.00,250", "equal-rows",
     "null", "c001,X, ,13-3-08,250.00,250", "what line 2 posts, once more"},
    {openingTitles, "C001,,R1,,1,1", "c001,,r1 ,,2,2", "same-reference", "Reference", "r1 ",
     "a further document beside that of line 2"},
};

const Misread vendors[] = {
    {vendorTitles, "W1,N,,,,Local,,,,", "W2,N,,,,Out-station,,,,", "locality-unknown", "Locality",
     "Out-station", "local"},
    {vendorTitles, "W1,N,,,,,SECOND,,,", "W2,N,,,,,FirstSale,,,", "sale-type-unknown", "Sale Type",
     "FirstSale", "second sales"},
    {vendorTitles, "W1,N,,,,,,,,", "w1 ,M,,,,,,,,", "duplicate-vendors", "Vendor Code", "w1",
     "the vendor of line 2 once more", "posted failed"},
    {vendorTitles, "W1,N,,,,,,,,", "W2,N,,020-1,,,,,,", "first-value-empty", "Phone", "020-1",
     "nothing"},
    {vendorTitles, "W1,N,x,,,,,,,", "W2,N,\"4, Fort Road\",,,,,,,", "quoted-commas", "Address",
     "4, Fort Road", "\"4 Fort Road\""},
    {vendorTitles, "W1,N,x,,,,,,,", "W2,N,,,,,,,", "short-lines", "null", "W2,N,,,,,,,",
     R"(Vendor Code "W2", Vendor Name "N", Address nothing, Pan Number nothing)"},
};

const Misread banks[] = {
    {bankTitles, "B1,N,R1,N", "b1,M,R2,N", "bank-names-differ", "Bank Name", "M",
     "a bank that line 2 has as \"N\""},
    {bankTitles, "B1,N,R1,N", "b1,N,r1,M", "duplicate-branches", "Branch Code", "r1",
     "the branch of line 2 once more", "posted partial"},
    {bankTitles, "B1,N,R1,N", "B2,\"\"\"Om\"\" Sai\",R2,N", "leading-quote", "Bank Name",
     "\"Om\" Sai", "\"Om\" Sa\""},
};

/// The place of the only harmful warning among a report's warnings.
std::string harmfulOf(const Json& report) {
  for (int i = 0;; ++i) {
    const std::string path = "warnings[" + std::to_string(i) + "]";
    if (report.at(path + ".harmful") == "true") return path;
  }
}

void check(const Misread& row, const std::string& kind) {
  CAPTURE(row.second);
  RunnerWorld world;
  world.kind = kind;
  const Ran refused = world.importLines({row.titles, row.first, row.second}, {"--json", "--raw"});
  CHECK(refused.status == 2);
  const Json report(refused.out);
  const std::string warning = harmfulOf(report);
  CHECK(report.at(warning + ".code") == row.code);
  const std::string reading = warning + ".readings[0]";
  CHECK(report.at(reading + ".line") == "3");
  CHECK(report.at(reading + ".field") == row.field);
  CHECK(report.at(reading + ".text") == row.text);
  CHECK(report.at(reading + ".readAs") == row.readAs);
  CHECK(contains(report.at("refused"), "--accept " + std::string(row.code)));
  CHECK_FALSE(world.folder.has("Error.log"));

  const Ran accepted = world.importLines({row.titles, row.first, row.second},
                                         {"--json", "--raw", "--accept", std::string(row.code)});
  CHECK_MESSAGE(accepted.status == 1, accepted.out);
  CHECK(Json(accepted.out).outcomes() == row.outcomes);
}

}  // namespace

TEST_CASE("what would be posted otherwise than it is written is not posted unless accepted") {
  for (const Misread& row : customers) check(row, "customer-opening");
  for (const Misread& row : vendors) check(row, "vendor");
  for (const Misread& row : banks) check(row, "bank-branch");
}

TEST_CASE("a preview and a dry run have the status that the import would have") {
  const struct {
    std::string kind;
    std::vector<std::string_view> lines;
    std::vector<std::string> more;
    int status;
  } rows[] = {
      {"customer-opening", {openingTitles, "C001,,R1,,1,1"}, {}, 0},
      {"customer-opening", {openingTitles, "C001,,R1,,1,2"}, {}, 1},
      {"customer-opening", {openingTitles, "C001,,R1,,0,2"}, {}, 1},
      {"customer-opening", {openingTitles, "C001,,R1,soon,1,1"}, {}, 1},
      {"customer-opening", {openingTitles, "C001,,R1,,1,"}, {}, 2},
      {"customer-opening", {openingTitles, "C001,,R1,,(1),1"}, {}, 2},
      {"customer-opening", {openingTitles, "C001,,R1,,(1),1"}, {"--accept", "all"}, 1},
      {"customer-opening", {openingTitles, "C001,,R1,,(1),1"}, {"--accept", "utf-8"}, 2},
      {"customer-opening", {"Customer ID,Balance", "C001,1"}, {}, 2},
      {"customer-opening", {"Customer ID,Balance"}, {}, 2},
      {"customer-opening", {openingTitles}, {"--map", "Balance=Nope"}, 2},
      {"customer-opening", {openingTitles, "C001,,R1,,1,1"}, {"--accept", "no-such"}, 3},
      {"vendor-opening",
       {"Vendor ID,Date,Bill Amount,Balance", "V01,soon,1,1"},
       {"--accept", "date-unreadable"},
       5},
      {"bank-branch", {bankTitles, "B1,N,R1,N"}, {}, 0},
      {"bank-branch", {bankTitles, "B1,N,R1,"}, {}, 2},
      {"bank-branch", {"Bank Code,Bank Name,Branch Code,Branch Name,City", "1,2,3,4,5"}, {}, 2},
  };
  for (const auto& row : rows) {
    CAPTURE(row.lines.back());
    CAPTURE(row.status);
    RunnerWorld world;
    world.kind = row.kind;
    std::string bytes;
    for (const std::string_view line : row.lines) bytes.append(line).append("\r\n");
    const std::string in = world.folder.write("in.csv", bytes);
    std::vector<std::string> preview{"preview", row.kind, in, "--json"};
    preview.insert(preview.end(), row.more.begin(), row.more.end());
    const Ran shown = world.run(preview);
    CHECK(shown.status == row.status);
    if (row.status != 3) {
      CHECK(Json(shown.out).at("wouldRefuse") == (row.status == 2 ? "true" : "false"));
    }
    std::vector<std::string> dry = row.more;
    dry.emplace_back("--dry-run");
    CHECK(world.import(in, dry).status == row.status);
    CHECK(world.import(in, row.more).status == row.status);
  }
}

TEST_CASE("a refusal names each value and the ways on, in words") {
  RunnerWorld world;
  const Ran ran = world.importLines({openingTitles, "C001,,R1,,\"500,00\",(1)"}, {"--raw"});
  CHECK(contains(ran.out, "    HARMFUL: Commas are dropped"));
  CHECK(contains(ran.out, "      line 2: Bill Amount \"500,00\" is read as 50000\n"));
  CHECK(contains(ran.out, "Refused: what would be posted is not what is written. Correct what"));
  CHECK(contains(ran.out, "--accept amount-decimal-comma,amount-in-parentheses\n"));
  const Ran accepted = world.import(world.folder.path("in.csv"), {"--raw", "--accept=all"});
  CHECK(contains(accepted.out, "line 2 (record 1) posted as read: Bill Amount \"500,00\" is read"));
  CHECK(contains(accepted.out, "Look at 1 record posted as read and not as written."));
  const Ran unknown =
      world.importLines({openingTitles, "C999,,R1,,(1),1"}, {"--raw", "--accept=all"});
  CHECK(contains(unknown.out, "; Bill Amount \"(1)\" is read as 0\n"));
  CHECK(contains(world.import(world.folder.path("in.csv"), {"--accept", "utf-16"}).err,
                 "no harmful warning \"utf-16\"; there is: utf-8,"));
}

TEST_CASE("what only looks harmful is not") {
  RunnerWorld world;
  // A party far above the others, a date that reads both ways, unread names, empty extra columns.
  const Ran ran = world.importLines(
      {"Customer ID,Customer Name,Reference,Date,Bill Amount,Balance,Route,Due Date",
       "C001,\"Caf\xC3\xA9, x\",R1,03/02/2008,1,1,,", "C002,,R1,,\"1,15,300.00\",\"90,000\",N,1/5",
       "C003,,R1,,-2,-2,\"a,b\","},
      {"--raw"});
  CHECK(ran.status == 0);
  CHECK(contains(ran.out, "date-reads-both-ways (1, line 2, in Date)"));
  CHECK(contains(ran.out, "sum-far-from-others (1, line 3, in Balance)"));
  CHECK_FALSE(contains(ran.out, "HARMFUL"));
}
