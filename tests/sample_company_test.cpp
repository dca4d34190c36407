#include "samples/company/sample_company.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>

#include "platform/errors.h"
#include "tests/support/call_procedure.h"
#include "tests/support/checks.h"
#include "tests/support/scratch_database.h"

namespace velk {
namespace {

constexpr auto text = DataType::VarChar;
constexpr auto whole = DataType::Integer;
constexpr auto real = DataType::Double;

std::int32_t code(ErrorNumber number) {
  return static_cast<std::int32_t>(number);
}

struct Company {
  ScratchDatabase folder;
  std::shared_ptr<OdbcConnection> connection;

  Company() {
    createSampleCompany(folder.path("company.db"));
    connection = openOdbc(embeddedConnectionString(folder.path("company.db")));
  }
  std::string ask(std::string_view query) { return velk::ask(*connection, query); }
  void call(std::string_view name, const Parameters& parameters) {
    callProcedure(*connection, name, parameters);
  }
  std::int32_t refusal(std::string_view name, const Parameters& parameters) {
    return errorOf([&] { call(name, parameters); });
  }
};

Parameters note(const char* party, double amount, double balance) {
  return {{party, text},  {"INV/7", text}, {Date{39537}, DataType::Date},
          {amount, real}, {balance, real}, {"", text}};
}

TEST_CASE("sample company: what the screens and imports ask") {
  Company company;
  struct Row {
    std::string query;
    std::string answer;
  };
  const Row rows[] = {
      {"SELECT TOP 1 OpeningDate FROM Setup", "2008-04-01"},
      {"PRAGMA journal_mode", "wal"},
      {"SELECT count(*) FROM ColorSettings", "6"},
      {"select count(*) from Customer where CustomerID=N'c001'", "1"},
      {"select count(*) from Customer", "40"},
      {"SELECT CustomerName FROM Customer WHERE CustomerID='C024'", "Xavier D'Souza & Bros"},
      {"SELECT CustomerName FROM Customer WHERE CustomerID='C039'", "Müller Bäckerei"},
      {"select count(*) from Vendors where VendorID='v01'", "1"},
      {"select count(*) from VendorAccount", "25"},
      {"select DSTypeValue from DSType_Master where DSTypeCtlPos=1 and OCGtype = ( select flag "
       "from tbl_velk_configabstract where screencode = 'OCGDS') and DSTypeValue = 'retail'",
       "Retail"},
      {"PRAGMA foreign_key_check", "(none)"},
      {"PRAGMA integrity_check", "ok"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.query);
    CHECK(company.ask(row.query) == row.answer);
  }
  CHECK_FALSE(toDate(company.connection->Execute("SELECT GETDATE()")->field(0), 0) < Date{45000});
}

TEST_CASE("sample company: opening documents") {
  struct Row {
    std::string procedure, balance, party, table, column;
    double sign;
  };
  const Row rows[] = {
      {"sp_insert_CustDebitNote", "sp_acc_import_customeropeningbalance", "C001",
       "CustomerDebitNote", "CustomerID", 1},
      {"sp_insert_CustCreditNote", "sp_acc_import_customeropeningbalance", "C001",
       "CustomerCreditNote", "CustomerID", -1},
      {"sp_insert_VendorDebitNote", "sp_acc_import_vendoropeningbalance", "V01", "VendorDebitNote",
       "VendorID", 1},
      {"sp_insert_VendorCreditNote", "sp_acc_import_vendoropeningbalance", "V01",
       "VendorCreditNote", "VendorID", -1},
  };
  for (const Row& row : rows) {
    CAPTURE(row.procedure);
    Company company;
    // The code in another letter case: keys compare without it.
    company.call(row.procedure, note(row.party[0] == 'C' ? "c001" : "v01", 500, 200));
    CHECK(company.ask("SELECT " + row.column +
                      " || ' ' || DocReference || ' ' || DocumentDate || ' ' || Amount || ' ' || "
                      "Balance || Narration FROM " +
                      row.table) ==
          (row.party[0] == 'C' ? "c001" : "v01") + std::string(" INV/7 2008-03-30 500.0 200.0"));
    CHECK(company.refusal(row.procedure, note("none", 500, 200)) ==
          code(ErrorNumber::IntegrityViolation));

    company.call(row.balance, {{row.party, text}, {row.sign * 200, real}});
    company.call(row.balance, {{row.party, text}, {row.sign * 50, real}});
    const std::string table =
        row.party[0] == 'C' ? "CustomerOpeningBalance" : "VendorOpeningBalance";
    CHECK(company.ask("SELECT OpeningBalance FROM " + table) == toText(row.sign * 250));
    CHECK(company.refusal(row.balance, {{"none", text}, {1.0, real}}) ==
          code(ErrorNumber::IntegrityViolation));
  }
}

TEST_CASE("sample company: banks and branches") {
  Company company;
  company.call("sp_insert_BankMaster", {{"O''B", text}, {"Bank of O''Brien", text}});
  company.call("sp_insert_BankMaster", {{"o''b", text}, {"Another name", text}});  // exists
  CHECK(company.ask("SELECT BankName FROM BankMaster WHERE BankCode = 'O''B'") ==
        "Bank of O'Brien");
  const Parameters branch{{"BR1", text}, {"Main", text}, {"O'B", text}};
  company.call("sp_insert_branch", branch);
  CHECK(company.ask("SELECT BranchName FROM BranchMaster WHERE BankCode = 'O''B'") == "Main");
  CHECK(company.refusal("sp_insert_branch", branch) == code(ErrorNumber::IntegrityViolation));
  CHECK(company.refusal("sp_insert_branch", {{"BR2", text}, {"Main", text}, {"none", text}}) ==
        code(ErrorNumber::IntegrityViolation));
}

Parameters vendor(const char* id, const char* name) {
  return {{id, text}, {name, text}, {"contact", text}, {"address", text}, {0, whole},
          {0, whole}, {0, whole},   {0, whole},        {"", text},        {"phone", text},
          {"", text}, {id, text},   {2, whole},        {"", text},        {"", text},
          {1, whole}, {"tn", text}, {"cs", text},      {"", text},        {0, whole},
          {"", text}, {"pan", text}};
}

TEST_CASE("sample company: vendors and their accounts") {
  Company company;
  company.call("sp_insert_Vendors", vendor("N01", "New Vendor"));
  CHECK(company.ask("SELECT VendorName || ContactPerson || Address || Phone || AlternateCode || "
                    "Locality || SaleType || TNGST || CST || PanNumber FROM Vendors "
                    "WHERE VendorID = 'N01'") == "New VendorcontactaddressphoneN0121tncspan");
  CHECK(company.refusal("sp_insert_Vendors", vendor("n01", "Again")) ==
        code(ErrorNumber::IntegrityViolation));
  CHECK(company.refusal("sp_insert_Vendors", vendor("longer than a code", "V")) ==
        code(ErrorNumber::IntegrityViolation));
  company.call("sp_acc_importvendor", {{"New Vendor", text}, {"N01", text}});
  CHECK(company.ask("SELECT AccountName FROM VendorAccount WHERE VendorID = 'N01'") ==
        "New Vendor");
}

TEST_CASE("sample company: salesmen") {
  Company company;
  const auto save = [&](const char* address) {
    company.call(
        "sp_save_salesman",
        {{"New Man", text}, {address, text}, {"res", text}, {"mob", text}, {0, whole}, {"", text}});
  };
  save("here");
  save("there");
  CHECK(company.ask("SELECT count(*) || Address FROM Salesman WHERE Salesman_name = 'NEW MAN'") ==
        "1there");

  const auto types = [&](const char* name, const char* type, const char* handheld) {
    return company.refusal(
        "sp_save_DsType",
        {{name, text}, {"DSType", text}, {type, text}, {"HandHeld DS", text}, {handheld, text}});
  };
  const std::string held =
      "SELECT group_concat(DSTypeValue, ' ') FROM DStype_Details D JOIN DSType_Master M ON "
      "M.DSTypeID = D.DSTypeID WHERE SalesmanID = (SELECT SalesmanID FROM Salesman WHERE "
      "Salesman_name = 'New Man')";
  CHECK(types("New Man", "Retail", "No") == 0);
  CHECK(company.ask(held) == "Retail No");
  CHECK(types("New Man", "rural", "YES") == 0);
  CHECK(company.ask(held) == "Rural Yes");
  // Refused as a whole: what he had stays.
  for (const char* handheld : {"No", "Maybe"}) {
    CHECK(types("New Man", *handheld == 'N' ? "Nothing" : "Retail", handheld) ==
          code(ErrorNumber::IntegrityViolation));
    CHECK(company.ask(held) == "Rural Yes");
  }
  CHECK(types("Nobody", "Retail", "No") == code(ErrorNumber::IntegrityViolation));
}

TEST_CASE("sample company: checks of DS types") {
  Company company;
  const auto first = [&](std::string_view procedure, const char* value) {
    const auto reply = callProcedure(*company.connection, procedure, {{value, text}});
    return reply->isEOF() ? "(none)" : toText(reply->field(0));
  };
  CHECK(first("sp_Check_DSCaption", "DSType") == "1");
  CHECK(first("sp_Check_DSCaption", "Category") == "0");
  CHECK(first("Velk_sp_checkDefault_DSTypeValue", "Retail") == "1");
  CHECK(first("Velk_sp_checkDefault_DSTypeValue", "Van Sales") == "0");
  CHECK(first("Velk_sp_checkDefault_DSTypeValue", "Export") == "(none)");  // another group's
  CHECK(first("Velk_sp_checkDefault_DSTypeValue", "Unheard of") == "(none)");
}

TEST_CASE("sample company: a new file or nothing") {
  const ScratchDatabase folder;
  const auto files = [&] {
    Texts names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path(""))) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  };
  CHECK(errorOf([&] { createSampleCompany(folder.path()); }) == code(ErrorNumber::FileAlreadyOpen));
  CHECK(std::filesystem::file_size(folder.path()) == 0);
  CHECK(errorOf([&] { createSampleCompany(folder.path("no/company.db")); }) ==
        code(ErrorNumber::PathFileAccess));
  CHECK(errorOf([&] { createSampleCompany(""); }) == code(ErrorNumber::BadFileNameOrNumber));
  CHECK(files() == Texts{"scratch.db"});

  std::ofstream(folder.path("company.db.new")) << "somebody's own";
  std::filesystem::remove(folder.path());
  createSampleCompany(folder.path("company.db"));
  Texts left = files();
  std::sort(left.begin(), left.end());
  CHECK(left == Texts{"company.db", "company.db.new"});
}

}  // namespace
}  // namespace velk
