#include "tests/tour/posted_check.h"

#include "base/errors.h"
#include "platform/odbc/odbc_connection.h"

namespace velk {

namespace {

struct Expectation {
  const char* what;
  const char* query;
  std::string_view result;
};

// Counted and added up from the files themselves, less the records that samples/README.md names.
constexpr Expectation expectations[] = {
    {"debit notes of customers",
     "SELECT printf('%d %.2f %.2f', COUNT(*), SUM(Amount), SUM(Balance)) FROM CustomerDebitNote",
     "19 343412.74 214536.99"},
    {"credit notes of customers",
     "SELECT printf('%d %.2f %.2f', COUNT(*), SUM(Amount), SUM(Balance)) FROM CustomerCreditNote",
     "2 1730.00 1730.00"},
    {"opening balances of customers",
     "SELECT printf('%d %.2f', COUNT(*), SUM(OpeningBalance)) FROM CustomerOpeningBalance",
     "20 212806.99"},
    {"debit notes of vendors",
     "SELECT printf('%d %.2f %.2f', COUNT(*), SUM(Amount), SUM(Balance)) FROM VendorDebitNote",
     "8 646181.50 497181.50"},
    {"credit notes of vendors",
     "SELECT printf('%d %.2f %.2f', COUNT(*), SUM(Amount), SUM(Balance)) FROM VendorCreditNote",
     "1 3150.00 3150.00"},
    {"opening balances of vendors",
     "SELECT printf('%d %.2f', COUNT(*), SUM(OpeningBalance)) FROM VendorOpeningBalance",
     "8 494031.50"},
    {"banks", "SELECT group_concat(BankCode) FROM (SELECT BankCode FROM BankMaster ORDER BY 1)",
     "BSH,CCB,DGB,O'B,UBD"},
    {"branches",
     "SELECT group_concat(BranchCode) FROM (SELECT BranchCode FROM BranchMaster ORDER BY 1)",
     "BSH001,BSH002,BSH003,CCB001,CCB002,DGB001,DGB002,DGB003,OB01,UBD001,UBD002"},
    {"new vendors with their accounts",
     "SELECT group_concat(VendorID) FROM (SELECT VendorID FROM Vendors "
     "JOIN VendorAccount USING (VendorID) WHERE VendorID LIKE 'W%' ORDER BY 1)",
     "W01,W02,W03,W04,W05"},
    {"DS types of salesmen",
     "SELECT group_concat(SalesmanID || ' ' || DSTypeValue) FROM "
     "(SELECT * FROM DStype_Details JOIN DSType_Master USING (DSTypeID) "
     "ORDER BY SalesmanID, DSTypeCtlPos)",
     "1 Rural,1 YES,2 Wholesale,2 NO,3 Retail,3 NO,4 Rural,4 NO,5 Wholesale,5 YES,6 Retail,6 NO,"
     "7 Wholesale,7 NO,8 Rural,8 NO"},
};

// Refused or warned of: 4 customers, 3 vendors; a branch that exists, a bank and its branch whose
// code is too long; 2 vendors; a salesman.
constexpr std::size_t expectedLogLines = 13;

std::string difference(std::string_view what, std::string_view found, std::string_view expected) {
  std::string text = "\n";
  return text.append(what).append(": ").append(found).append(" instead of ").append(expected);
}

}  // namespace

void checkPosted(const std::string& connectionString, std::size_t logLines) {
  const auto connection = openOdbc(connectionString);
  std::string differences;
  for (const Expectation& expectation : expectations) {
    const std::string found = toText(connection->Execute(expectation.query)->field(0));
    if (found != expectation.result) {
      differences += difference(expectation.what, found, expectation.result);
    }
  }
  if (logLines != expectedLogLines) {
    differences += difference("lines of the error log", std::to_string(logLines),
                              std::to_string(expectedLogLines));
  }
  if (differences.empty()) return;
  throw RuntimeError(ErrorNumber::InvalidProcedureCall,
                     "The tour's files left something else than expected:" + differences);
}

}  // namespace velk
