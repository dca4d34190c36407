#include "samples/company/sample_company.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>

#include "platform/errors.h"
#include "tests/support/database_calls.h"

namespace velk {
namespace {

struct Company {
  ScratchDatabase folder;
  std::shared_ptr<OdbcConnection> connection;

  Company() {
    createSampleCompany(folder.path("company.db"));
    connection = openOdbc(embeddedConnectionString(folder.path("company.db")));
  }
  std::string ask(std::string_view query) { return velk::ask(*connection, query); }
  auto call(std::string_view name, const Parameters& parameters) {
    return callProcedure(*connection, name, parameters);
  }
  // By a constraint: an unknown or a doubled key, a text too long.
  bool refuses(std::string_view name, const Parameters& parameters) {
    const auto error = errorOf([&] { call(name, parameters); });
    return error == code(Errors::IntegrityViolation);
  }
};

TEST_CASE_FIXTURE(Company, "sample company: what the screens and imports ask") {
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
    CHECK(ask(row.query) == row.answer);
  }
  CHECK_FALSE(toDate(connection->Execute("SELECT GETDATE()")->field(0), 0) < Date{45000});
}

TEST_CASE("sample company: opening documents") {
  // The code in another letter case: keys compare without it.
  struct Row {
    std::string kind, note, party, balances, code;
    double sign;
  };
  const Row rows[] = {
      {"Cust", "DebitNote", "Customer", "customer", "c001", 1},
      {"Cust", "CreditNote", "Customer", "customer", "c001", -1},
      {"Vendor", "DebitNote", "Vendor", "vendor", "v01", 1},
      {"Vendor", "CreditNote", "Vendor", "vendor", "v01", -1},
  };
  for (const Row& row : rows) {
    const std::string insert = "sp_insert_" + row.kind + row.note;
    CAPTURE(insert);
    Company company;
    const auto note = [](const std::string& party) {
      return Parameters{party, "INV/7", Date{39537}, 500.0, 200.0, ""};
    };
    company.call(insert, note(row.code));
    CHECK(company.ask("SELECT " + row.party +
                      "ID || ' ' || DocReference || ' ' || DocumentDate || ' ' || Amount || ' ' || "
                      "Balance || Narration FROM " +
                      row.party + row.note) == row.code + " INV/7 2008-03-30 500.0 200.0");
    CHECK(company.refuses(insert, note("none")));

    const std::string post = "sp_acc_import_" + row.balances + "openingbalance";
    company.call(post, {row.code, row.sign * 200});
    company.call(post, {row.code, row.sign * 50});
    CHECK(company.ask("SELECT OpeningBalance FROM " + row.party + "OpeningBalance") ==
          toText(row.sign * 250));
    CHECK(company.refuses(post, {"none", 1.0}));
  }
}

TEST_CASE_FIXTURE(Company, "sample company: banks and branches") {
  call("sp_insert_BankMaster", {"O''B", "Bank of O''Brien"});
  call("sp_insert_BankMaster", {"o''b", "Another name"});  // exists
  CHECK(ask("SELECT BankName FROM BankMaster WHERE BankCode = 'O''B'") == "Bank of O'Brien");
  call("sp_insert_branch", {"BR1", "Main", "O'B"});
  CHECK(ask("SELECT BranchName FROM BranchMaster WHERE BankCode = 'O''B'") == "Main");
  CHECK(refuses("sp_insert_branch", {"BR1", "Main", "O'B"}));
  CHECK(refuses("sp_insert_branch", {"BR2", "Main", "none"}));
}

TEST_CASE_FIXTURE(Company, "sample company: vendors and their accounts") {
  const auto newVendor = [](const char* id) {
    return Parameters{id,   "New Vendor", "contact", "address", 0,  0,    0,  0,
                      "",   "phone",      "",        id,        2,  "",   "", 1,
                      "tn", "cs",         "",        0,         "", "pan"};
  };
  call("sp_insert_Vendors", newVendor("N01"));
  CHECK(ask("SELECT VendorName || ContactPerson || Address || Phone || AlternateCode || "
            "Locality || SaleType || TNGST || CST || PanNumber FROM Vendors "
            "WHERE VendorID = 'N01'") == "New VendorcontactaddressphoneN0121tncspan");
  CHECK(refuses("sp_insert_Vendors", newVendor("n01")));
  CHECK(refuses("sp_insert_Vendors", newVendor("longer than a code")));
  call("sp_acc_importvendor", {"New Vendor", "N01"});
  CHECK(ask("SELECT AccountName FROM VendorAccount WHERE VendorID = 'N01'") == "New Vendor");
}

TEST_CASE_FIXTURE(Company, "sample company: salesmen") {
  for (const char* address : {"here", "there"}) {
    call("sp_save_salesman", {"New Man", address, "res", "mob", 0, ""});
  }
  CHECK(ask("SELECT count(*) || Address FROM Salesman WHERE Salesman_name = 'NEW MAN'") ==
        "1there");

  struct Row {
    std::string name, type, handheld, held;
    bool refused;
  };
  const Row rows[] = {
      {"New Man", "Retail", "No", "Retail NO", false},
      {"New Man", "rural", "YES", "Rural YES", false},
      // Refused as a whole: what he had stays.
      {"New Man", "Nothing", "No", "Rural YES", true},
      {"New Man", "Retail", "Maybe", "Rural YES", true},
      {"Nobody", "Retail", "No", "Rural YES", true},
  };
  for (const Row& row : rows) {
    CAPTURE(row.type);
    const Parameters types{row.name, "DSType", row.type, "HandHeld DS", row.handheld};
    CHECK(refuses("sp_save_DsType", types) == row.refused);
    CHECK(ask("SELECT group_concat(DSTypeValue, ' ') FROM DStype_Details D JOIN DSType_Master M ON "
              "M.DSTypeID = D.DSTypeID WHERE SalesmanID = (SELECT SalesmanID FROM Salesman WHERE "
              "Salesman_name = 'New Man')") == row.held);
  }
}

TEST_CASE_FIXTURE(Company, "sample company: checks of DS types") {
  const auto first = [&](const char* procedure, const char* value) {
    return firstField(call(procedure, {value}));
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
    std::sort(names.begin(), names.end());
    return names;
  };
  CHECK(errorOf([&] { createSampleCompany(folder.path()); }) == code(Errors::FileAlreadyOpen));
  CHECK(std::filesystem::file_size(folder.path()) == 0);
  CHECK(errorOf([&] { createSampleCompany(folder.path("no/company.db")); }) ==
        code(Errors::PathFileAccess));
  CHECK(errorOf([] { createSampleCompany(""); }) == code(Errors::BadFileNameOrNumber));
  CHECK(files() == Texts{"scratch.db"});

  std::ofstream(folder.path("company.db.new")) << "somebody's own";
  createSampleCompany(folder.path("company.db"));
  CHECK(files() == Texts{"company.db", "company.db.new", "scratch.db"});
}

}  // namespace
}  // namespace velk
