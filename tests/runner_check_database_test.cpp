// What check-database says of a company's database, on each engine.
#include <doctest/doctest.h>

#include <map>
#include <set>

#include "apps/opnimp/run/company_needs.h"
#include "platform/odbc/statement_shape.h"
#include "tests/support/checks.h"
#include "tests/support/engines.h"
#include "tests/support/fake_database.h"
#include "tests/support/json_value.h"
#include "tests/support/runner.h"
#include "tests/support/salesmen.h"

namespace velk {
namespace {

/// "customer-opening=true ...".
std::string kindsThatWork(const std::string& json) {
  std::string all;
  const auto document = nlohmann::ordered_json::parse(json);
  for (const auto& kind : document.at("kinds")) {
    all += kind.at("kind").get<std::string>() + "=" + kind.at("canWork").dump() + " ";
  }
  return all;
}

/// What is spoilt: a procedure, the number of another's parameters, a table.
const std::map<std::string, std::vector<const char*>> spoilt{
    {"embedded",
     {"DELETE FROM StoredProcedure WHERE name = 'sp_insert_VendorDebitNote'",
      "UPDATE StoredProcedure SET statement = 'SELECT 1', arguments = '' WHERE name = "
      "'sp_save_DsType'",
      "ALTER TABLE Customer RENAME TO Customers"}},
    {"postgresql",
     {"DROP FUNCTION sp_insert_VendorDebitNote", "DROP PROCEDURE sp_save_DsType",
      "CREATE PROCEDURE sp_save_DsType(a text) LANGUAGE sql AS 'SELECT 1'",
      "REVOKE SELECT ON Customer FROM opnimp_import"}},
    {"mariadb",
     {"REVOKE EXECUTE ON PROCEDURE sp_insert_VendorDebitNote FROM opnimp_import",
      "DROP PROCEDURE sp_save_DsType", "CREATE PROCEDURE sp_save_DsType(a text) SELECT 1",
      "GRANT EXECUTE ON PROCEDURE sp_save_DsType TO opnimp_import",
      "REVOKE SELECT ON Customer FROM opnimp_import"}}};

/// What gives the account too much and takes it back, and what is said of it.
const struct {
  std::string engine;
  const char* give;
  const char* take;
  const char* told;
} excess[] = {
    {"postgresql", "GRANT DELETE ON Setup TO opnimp_import",
     "REVOKE DELETE ON Setup FROM opnimp_import", "to write the table setup"},
    {"postgresql", "ALTER FUNCTION sp_insert_CustDebitNote SET search_path = pg_temp, public",
     "ALTER FUNCTION sp_insert_CustDebitNote SET search_path = ''",
     R"(["to put temporary tables in the place of those of sp_insert_custdebitnote, whose )"
     R"(search_path does not end with pg_temp"])"},
    {"mariadb", "GRANT DELETE ON Setup TO opnimp_import",
     "REVOKE DELETE ON Setup FROM opnimp_import", "delete on the table setup"}};

TEST_CASE("check-database: what each kind finds, and what the account may too much") {
  for (const TestEngine& engine : testEngines()) {
    CAPTURE(std::string(engine.name));
    RunnerWorld world;
    const EngineCompany company(engine, world.folder.path(""));
    const auto check = [&](std::vector<std::string> more = {}) {
      more.insert(more.begin(), {"check-database", "--database", company.database(), "--json"});
      return world.run(more);
    };
    const Ran whole = check();
    CHECK_MESSAGE(whole.status == 0, whole.out);
    CHECK(kindsThatWork(whole.out) ==
          "customer-opening=true vendor-opening=true bank-branch=true vendor=true salesman=true ");
    CHECK(Json(whole.out).at("firstTransactionDate") == "01/04/2008");
    // The engine tells what the salesmen's last procedure takes.
    const auto takes = nlohmann::json::parse(whole.out)["kinds"][4]["procedures"][3]["takes"];
    CHECK(takes.size() == (engine.isEmbedded() ? 0 : 5));
    CHECK_FALSE(contains(whole.out, "change-me"));

    for (const auto& [of, give, take, told] : excess) {
      if (of != engine.name) continue;
      company.connection()->Execute(give);
      const Ran rights = check({"vendor"});
      CHECK(rights.status == 1);
      CHECK_MESSAGE(contains(lowerAscii(Json(rights.out).at("excessRights")), told), rights.out);
      company.connection()->Execute(take);
      CHECK(check({"vendor"}).status == 0);
    }
    if (!spoilt.contains(engine.name)) continue;
    for (const char* statement : spoilt.at(engine.name)) company.connection()->Execute(statement);
    const Ran broken = check();
    CHECK(broken.status == 2);
    CHECK_MESSAGE(kindsThatWork(broken.out) ==
                      "customer-opening=false vendor-opening=false bank-branch=true vendor=true "
                      "salesman=false ",
                  broken.out);
    const std::string text =
        world.run({"check-database", "salesman", "--database", company.database()}).out;
    CHECK_MESSAGE(contains(text, "salesman: CANNOT WORK\n"), text);
    CHECK(contains(text, "  sp_save_DsType: MISSING, or not with 5 parameters"));
  }
}

TEST_CASE("check-database: a preview tells of texts that a procedure would cut") {
  for (const TestEngine& engine : testEngines()) {
    if (std::string_view(engine.name) != "mariadb") continue;  // others keep no lengths
    RunnerWorld world;
    const EngineCompany company(engine, {});
    for (const char* statement :
         {"DROP PROCEDURE sp_insert_CustDebitNote",
          "CREATE PROCEDURE sp_insert_CustDebitNote(a text, reference varchar(4), c datetime, d "
          "double, e double, f text) SELECT 1",
          "GRANT EXECUTE ON PROCEDURE sp_insert_CustDebitNote TO opnimp_import"}) {
      company.connection()->Execute(statement);
    }
    // What an import passes would be changed without a word.
    company.connection()->Execute("DROP PROCEDURE sp_acc_import_customeropeningbalance");
    company.connection()->Execute(
        "CREATE PROCEDURE sp_acc_import_customeropeningbalance(a varchar(9), amount int) SELECT 1");
    company.connection()->Execute(
        "GRANT EXECUTE ON PROCEDURE sp_acc_import_customeropeningbalance TO opnimp_import");
    const Ran unfit = world.run({"check-database", world.kind, "--database", company.database()});
    CHECK(unfit.status == 2);
    CHECK_MESSAGE(contains(unfit.out, "    UNFIT: amount (int): amounts have fractions"),
                  unfit.out);
    const std::string file = world.folder.write(
        "in.csv", crlf({openingTitles, "C001,A,abcd,03/03/2008,1.00,1.00",
                        "C001,A,abcde,03/03/2008,1.00,1.00", "C001,A,abcde,03/03/2008,-1.00,0"}));
    const auto preview = [&](std::vector<std::string> more) {
      more.insert(more.begin(), {"preview", world.kind, file, "--accept", "all"});
      return world.run(more);
    };
    const Ran told = preview({"--json", "--database", company.database()});
    const Json json(told.out);
    CHECK(json.at("longValues") ==
          R"([{"record":2,"line":3,"procedure":"sp_insert_CustDebitNote","parameter":"reference",)"
          R"("takes":4,"length":5}])");
    CHECK(contains(told.out, R"("value-too-long")"));
    for (const char* command : {"import", "preview"}) {
      const Ran refused = world.run({command, world.kind, file, "--accept", "same-reference",
                                     "--database", company.database()});
      CHECK(refused.status == 2);
      CHECK_MESSAGE(contains(refused.out, "\"abcde\" is read as the first 4 of its 5 characters"),
                    refused.out);
    }
    CHECK(Json(preview({"--json"}).out).at("longValues") == "[]");
  }
}

TEST_CASE("check-database: without a first transaction date no balance is imported") {
  for (const char* date : {"'rubbish'", "''"}) {
    CAPTURE(date);
    RunnerWorld world;
    openOdbc(embeddedConnectionString(world.database()))
        ->Execute(std::string("UPDATE Setup SET OpeningDate = ") + date);
    const Ran ran = world.importLines({openingTitles, "C001,A,R1,,1.00,1.00"});
    CHECK(ran.status == 2);
    CHECK_MESSAGE(contains(ran.out, "has no first transaction date"), ran.out);
    const Ran check = world.run({"check-database", "--database", world.database()});
    CHECK(check.status == 2);
    CHECK(contains(check.out, "customer-opening: CANNOT WORK"));
    CHECK(contains(check.out, "vendor: can work"));
  }
}

TEST_CASE("check-database: what it looks for is what imports ask and call") {
  const std::string banks = crlf({bankTitles, "B,B,C,C"});
  const std::string vendors = crlf({vendorTitles, "V,V,A,1,P,Local,First Sales,1,2,3"});
  const std::string balances = crlf({openingTitles, good1, good2, good3});
  const std::map<std::string_view, std::string> files{
      {"customer-opening", balances},
      {"vendor-opening", std::regex_replace(balances, std::regex("Customer"), "Vendor")},
      {"bank-branch", banks},
      {"vendor", vendors},
      {"salesman", workbook({salesmanTitles, "Mann|A|1|2|Retail|Retail|YES"})}};
  for (const ImportKind& kind : importKinds()) {
    CAPTURE(std::string(kind.name));
    RunnerWorld world;
    world.kind = kind.name;
    world.script("");
    const auto connection =
        std::dynamic_pointer_cast<FakeConnection>(world.surroundings.openDatabase({}, {}));
    const Ran ran = world.import(world.folder.write("in.xls", files.at(kind.name)),
                                 {"--database", "Driver=x", "--accept", "all"});
    CHECK_MESSAGE(ran.status <= 1, ran.out << ran.err);
    std::set<std::string> made;
    for (const FakeCall& call : connection->calls) {
      const bool isQuery = call.kind == CommandType::Text;
      made.insert(isQuery ? shapeOf(call.text)->text
                          : call.text + "/" + std::to_string(call.parameters.size()));
    }
    made.erase("Select * From ColorSettings");
    std::set<std::string> needed;
    const CompanyNeeds needs = needsOf(kind);
    for (const std::string& text : needs.lookUps) needed.insert(shapeOf(text)->text);
    for (const ProcedureNeed& need : needs.procedures) {
      needed.insert(std::string(need.name) + "/" + std::to_string(need.parameters));
    }
    CHECK(Texts(made.begin(), made.end()) == Texts(needed.begin(), needed.end()));
  }
}

}  // namespace
}  // namespace velk
