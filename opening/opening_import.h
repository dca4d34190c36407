// The import of opening balances: each record of the mapping list becomes a debit or credit note of
// a customer or vendor, followed by an opening-balance entry.
//
// Fields by position in the mapping list: 0 code, 2 reference, 3 date, 4 bill amount, 5 balance.
// The name (1) and the customers' document type (6) are not read: the sign of the bill amount
// decides the document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/dates.h"
#include "mapping/opening_screen.h"

namespace velk {

/// What an import of one kind says and calls, and how it ends.
struct OpeningImportKind {
  std::string_view idNotMapped;   ///< refusal of the run: a record without a code
  std::string_view existsQuery;   ///< up to the code; the closing quote follows it
  std::string_view unknownParty;  ///< log line, the code follows
  /// Log line, the cell's text follows. Empty: a date that can't be read ends the run, as error 13.
  std::string_view invalidDate;
  std::string_view forParty;        ///< end of log lines about a date, the code follows
  std::string_view balanceTooBig;   ///< log line, the code follows
  std::string_view debitNote;       ///< procedure for a bill amount above 0
  std::string_view creditNote;      ///< ... below 0
  std::string_view openingBalance;  ///< procedure for the account
  /// Refusals of the run and the closing message are shown by the platform, not by the host.
  bool showsPlainly = false;
  bool refusalKeepsScreen = false;  ///< a refused run leaves the screen as it is
  std::string_view completed;       ///< said after every full pass; empty: nothing
  std::string_view checkTheLog;     ///< the closing message when a record was logged
  bool namesTheLog = false;         ///< the log's path follows it
};

/// One run on one screen. Errors that no step traps leave `cmdImport_Click` and end the run: what
/// was posted before stays posted.
class OpeningImport {
 public:
  OpeningImport(OpeningScreen& screen, const OpeningImportKind& kind)
      : screen_(screen), module_(screen.module()), kind_(kind) {}

  void cmdImport_Click();

  /// The company's first transaction date; 30 December 1899 when it has none.
  Date GetTransDate();
  /// The database's date and time. The import does not use it.
  Date GetServerDate();
  /// CustomerExists, VendorExists: true when the database knows the code. Quotes in the code are
  /// not doubled; a query that fails means no.
  bool partyExists(std::string_view code);

 private:
  struct Note {
    std::string code;
    std::string reference;
    Date date;
    double bill = 0;
    double balance = 0;
  };

  bool fieldsAreMapped();
  void sayCompleted();
  void show(std::string_view message, std::int32_t style);
  void importRecord(std::size_t row);
  std::optional<Date> documentDate(std::size_t row, std::string_view code);
  void post(const Note& note);
  void call(std::string_view procedure, std::span<const ProcedureParameter> parameters);
  void reject(std::string_view line);
  Date queryDate(std::string_view query);

  OpeningScreen& screen_;
  Velk_ModOpnImp& module_;
  const OpeningImportKind& kind_;
  int currentYear_ = 0;
  Date transDate_;
  bool errorFlag_ = false;
};

}  // namespace velk
