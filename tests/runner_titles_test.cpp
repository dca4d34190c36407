// Titles that are not a field's own: what they look like, and the option that maps them.
#include <doctest/doctest.h>

#include "apps/opnimp/records/title_suggestions.h"
#include "shared/csv_text.h"
#include "tests/support/runner.h"

using namespace velk;

namespace {

/// What is suggested in a text, as arguments.
std::vector<std::string> mapOptions(std::string_view text) {
  constexpr std::string_view option = "): --map \"";
  std::vector<std::string> options;
  for (std::size_t at = 0; (at = text.find(option, at)) != std::string_view::npos;) {
    at += option.size();
    const std::string value(text.substr(at, text.find('"', at) - at));
    if (value != "Field=Column") options.insert(options.end(), {"--map", value});
  }
  return options;
}

}  // namespace

TEST_CASE("titles: what looks like a field is suggested for it, with the reason") {
  struct Row {
    std::string_view field, title, suggestion;  // the reason and the option; empty: none
  };
  const Row rows[] = {
      {"Customer ID", "CustomerID", "the same letters: Customer ID=CustomerID"},
      {"Customer ID", "Cust. ID", "the same words, shortened: Customer ID=Cust. ID"},
      {"Customer ID", "Custmoer ID", "a letter apart: Customer ID=Custmoer ID"},
      {"Customer ID", "Party Code", "a usual name for it: Customer ID=Party Code"},
      {"Customer ID", "Kunden-Nr.", "a usual name for it in German: Customer ID=Kunden-Nr."},
      {"Customer ID", "N\xC2\xB0 client",
       "a usual name for it in French: Customer ID=N\xC2\xB0 client"},
      {"Customer ID", "Salesman ID", ""},
      {"Bill Amount", "Bill Amt", "the same words, shortened: Bill Amount=Bill Amt"},
      {"Bill Amount", "Inv Amount", "a usual name for it, shortened: Bill Amount=Inv Amount"},
      {"Balance", "Ballance", "a letter apart: Balance=Ballance"},
      {"Balance", "Offener Betrag", "a usual name for it in German: Balance=Offener Betrag"},
      {"Date", "Data", "a usual name for it in Portuguese: Date=Data"},
      {"Date", "Rate", ""},
      {"Vendor Code", "Supplier \"No\"", ""},
      {"Vendor Code", "Supplier`Code", "a usual name for it: Vendor Code=#2"},
      {"Document Type", "Doc Type", ""},
      {"Phone", "", ""},
      {"Phone", "\xE2\x82\xAC", ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.title);
    const auto found =
        suggestTitles({{std::string(row.field), std::nullopt, {}}, {"Other", 0, "X"}},
                      {"X", std::string(row.title)});
    CHECK((found.empty() ? "" : found[0].reason + ": " + found[0].option()) == row.suggestion);
  }
}

TEST_CASE("titles: a column goes to the field that it fits best, and one that is used to none") {
  const auto both =
      suggestTitles({{"Bill Amount", {}, {}}, {"Balance", {}, {}}, {"Date", 0, "Datum"}},
                    {"Datum", "Amount Due", "Amount"});
  REQUIRE(both.size() == 2);
  CHECK(both[0].option() == "Bill Amount=Amount");
  CHECK(both[1].option() == "Balance=Amount Due");
}

TEST_CASE("titles: where two columns may be the field both are named, and no command is ready") {
  const struct {
    std::string_view field, titles, columns;
  } rows[] = {{"Bill Amount", "Bill Amt,Balance Amount,Amount", "31"},
              {"Vendor Code", "Vendor,Supplier Code", "12"},
              {"Vendor Code", "Vendor,VENDOR CODE", "2"},
              {"Customer ID", "Debit,Credit,Dr/Cr,Soll", ""}};
  for (const auto& row : rows) {
    CAPTURE(row.titles);
    std::string columns;
    for (const auto& each : suggestTitles({{std::string(row.field), {}, {}}},
                                          splitLine(row.titles, QuotedComma::Keep))) {
      columns += std::to_string(each.column + 1);
      CHECK(each.isDoubtful == (row.columns.size() > 1));
    }
    CHECK(columns == row.columns);
  }
  RunnerWorld world;
  const Ran refused = world.importLines(
      {"Customer ID,Customer Name,Reference,Date,Bill Amt,Amount,Balance", good1});
  CHECK(
      contains(refused.out, "\"Bill Amt\" may be Bill Amount (the same words, shortened; so may"));
  CHECK_FALSE(contains(refused.out, "`opnimp import"));
}

TEST_CASE("titles: a refusal names the columns, and what it suggests makes the import work") {
  RunnerWorld world;
  constexpr std::string_view titles = "Kundennummer,Name,Ref No,Datum,Amount,Saldo";
  const Ran refused = world.importLines({titles, good1});
  CHECK(refused.status == 2);
  CHECK(contains(refused.out, "The file has: Kundennummer, Name, Ref No, Datum, Amount, Saldo"));
  const auto options = mapOptions(refused.out);
  CHECK(options.size() == 2 * 6);
  CHECK(world.importLines({titles, good1}, options).status == 0);
  CHECK(world.ask("SELECT DocReference FROM CustomerDebitNote") == "R1");
}
