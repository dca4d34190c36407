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
#include <string>
#include <string_view>

#include "base/dates.h"
#include "base/errors.h"
#include "mapping/opening_screen.h"
#include "opening/opening_kinds.h"

namespace velk {

/// One run on one screen. Errors that no step traps leave `cmdImport_Click` and end the run: what
/// was posted before stays posted.
class OpeningImport {
 public:
  OpeningImport(OpeningScreen& screen, const OpeningImportKind& kind)
      : screen_(screen), run_(screen.run()), module_(screen.module()), kind_(kind) {}

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
  double amount(std::size_t row, std::size_t field, std::string_view code);
  std::string ofParty(std::string_view what, std::string_view text, std::string_view code) const;
  std::optional<Date> documentDate(std::size_t row, std::string_view code);
  void post(const Note& note);
  /// To the log, so that the user is told at the end to look there.
  void tell(Verdict verdict, const Finding& why, std::string_view code);
  std::string logLine(const Finding& why, std::string_view code) const;

  OpeningScreen& screen_;
  ImportRun& run_;
  Velk_ModOpnImp& module_;
  const OpeningImportKind& kind_;
  int currentYear_ = 0;
  Date transDate_;
  bool errorFlag_ = false;
};

/// The Import button of an opening screen.
class OpeningImportButton final : public ImportButton {
 public:
  /// `kind` outlives the object.
  explicit OpeningImportButton(const OpeningImportKind& kind) : kind_(kind) {}
  void click(OpeningScreen& screen) override { OpeningImport(screen, kind_).cmdImport_Click(); }

 private:
  const OpeningImportKind& kind_;
};

}  // namespace velk
