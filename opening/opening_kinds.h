// What the imports of opening balances say and call: one table for customers and one for vendors.
#pragma once

#include <string>
#include <string_view>

namespace velk {

/// Answers the first transaction date.
inline constexpr std::string_view firstDateQuery = "SELECT TOP 1 OpeningDate FROM Setup";

struct OpeningImportKind {
  std::string_view idNotMapped;     ///< refusal of the run: a record without a code
  std::string_view existsQuery;     ///< up to the code; the closing quote follows it
  std::string_view unknownParty;    ///< log line, the code follows
  bool badDateEndsRun = false;      ///< a date that can't be read is error 13, not a refused record
  std::string_view forParty;        ///< end of log lines about a date, the code follows
  std::string_view balanceTooBig;   ///< log line, the code follows
  std::string_view debitNote;       ///< procedure for a bill amount above 0
  std::string_view creditNote;      ///< ... below 0
  std::string_view openingBalance;  ///< procedure for the account
  /// Refusals of the run and the closing message are shown by the platform, not by the host.
  bool showsPlainly = false;
  bool refusalKeepsScreen = false;  ///< a refused run leaves the screen as it is
  std::string_view completed;       ///< said after every full pass; empty: nothing is said
  std::string_view checkTheLog;     ///< the closing message when a record was logged
  bool namesTheLog = false;         ///< the log's path follows it
};

/// The look-up of a code, which is pasted as it is: one with a quote in it makes the query fail.
inline std::string partyQuery(const OpeningImportKind& kind, std::string_view code) {
  return std::string(kind.existsQuery).append(code).append("'");
}

inline constexpr OpeningImportKind customerOpening{
    .idNotMapped = "Customer Id is Mandatory.Its not been Mapped",
    .existsQuery = "select count(*) from Customer where CustomerID=N'",
    .unknownParty = "Customer does not exist for code - ",
    .badDateEndsRun = false,
    .forParty = ") for Customer - ",
    .balanceTooBig = "Balance is greater than BillAmount for Customer - ",
    .debitNote = "sp_insert_CustDebitNote",
    .creditNote = "sp_insert_CustCreditNote",
    .openingBalance = "sp_acc_import_customeropeningbalance",
    .showsPlainly = false,
    .refusalKeepsScreen = false,
    .completed = "",
    .checkTheLog = "Check The Error Log ",
    .namesTheLog = true,
};

inline constexpr OpeningImportKind vendorOpening{
    .idNotMapped = "Vendor Id is Mandatory.Its not been Mapped",
    .existsQuery = "select count(*) from Vendors where VendorID='",  // no N before the quote here
    .unknownParty = "Vendor does not exist for code - ",
    .badDateEndsRun = true,
    .forParty = ") for Vendor - ",
    .balanceTooBig = "Balance is greater than BillAmount for Vendor - ",
    .debitNote = "sp_insert_VendorDebitNote",
    .creditNote = "sp_insert_VendorCreditNote",
    .openingBalance = "sp_acc_import_vendoropeningbalance",
    .showsPlainly = true,
    .refusalKeepsScreen = true,
    .completed = "Import Successfull",
    .checkTheLog = "Check The Error Log",
    .namesTheLog = false,
};

}  // namespace velk
