#include "samples/company/sample_company.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>

#include "base/errors.h"
#include "tests/support/database_calls.h"

namespace velk {
namespace {

struct Company {
  ScratchDatabase folder;
  std::shared_ptr<OwnConnection> connection;

  Company() {
    createSampleCompany(folder.path("company.db"));
    connection = openOdbc(embeddedConnectionString(folder.path("company.db")));
  }
  std::string ask(std::string_view query) { return velk::ask(*connection, query); }
};

TEST_CASE_FIXTURE(Company, "sample company: what the screens and imports ask") {
  const std::pair<const char*, const char*> rows[] = {
      {"SELECT TOP 1 OpeningDate FROM Setup", "2008-04-01"},
      {"PRAGMA journal_mode", "wal"},
      {"SELECT count(*) FROM ColorSettings", "6"},
      {"select count(*) from Customer where CustomerID=N'c001'", "1"},
      {"select count(*) from Customer", "40"},
      {"SELECT CustomerName FROM Customer WHERE CustomerID='C039'", "Müller Bäckerei"},
      {"select count(*) from Vendors where VendorID='v01'", "1"},
      {"select count(*) from VendorAccount", "25"},
      {"select DSTypeValue from DSType_Master where DSTypeCtlPos=1 and OCGtype = ( select flag "
       "from tbl_velk_configabstract where screencode = 'OCGDS') and DSTypeValue = 'retail'",
       "Retail"},
      {"PRAGMA foreign_key_check", "(none)"},
      {"PRAGMA integrity_check", "ok"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.first);
    CHECK(ask(row.first) == row.second);
  }
  CHECK_FALSE(toDate(connection->Execute("SELECT GETDATE()")->field(0), 0) < Date{45000});
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
