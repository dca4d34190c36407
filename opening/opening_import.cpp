#include "opening/opening_import.h"

#include <array>
#include <cmath>
#include <utility>

#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "opening/company_dates.h"

namespace velk {

namespace {

enum Field : std::size_t { Code = 0, Reference = 2, DocDate = 3, BillAmount = 4, Balance = 5 };

constexpr std::string_view invalidDate = "Invalid Date(";

std::string joined(std::string_view a, std::string_view b) {
  return std::string(a).append(b);
}

}  // namespace

// The screen is emptied before the user is told to read the log, and after the message of success:
// that is the order in which users have always seen it.
void OpeningImport::cmdImport_Click() {
  currentYear_ = screen_.desktop().currentYear();
  transDate_ = GetTransDate();
  if (fieldsAreMapped()) {
    run_.forEachRecord(screen_.lastDataRow(), [this](std::size_t row) { importRecord(row); });
    sayCompleted();
    run_.end();
  } else if (kind_.refusalKeepsScreen) {
    return;
  }
  screen_.emptyScreen();
  if (errorFlag_) {
    show(joined(kind_.checkTheLog, kind_.namesTheLog ? module_.errorLogPath() : ""),
         styleInformation);
  }
}

void OpeningImport::sayCompleted() {
  if (kind_.completed.empty()) return;
  HostService& host = module_.hostService();
  host.messageBox(host.messageText(kind_.completed, {}), styleInformation);
}

void OpeningImport::show(std::string_view message, std::int32_t style) {
  if (kind_.showsPlainly) {
    screen_.desktop().messageBox(message, style);
  } else {
    module_.hostService().messageBox(message, style);
  }
}

// One pass a field: the first field that lacks a value is named, not the first record.
bool OpeningImport::fieldsAreMapped() {
  const std::array<std::pair<Field, std::string_view>, 3> mandatory{
      {{Code, kind_.idNotMapped},
       {BillAmount, "Bill Amount is Mandatory.Its not been Mapped"},
       {Balance, "Balance is Mandatory.Its not been Mapped"}}};
  for (const auto& [field, message] : mandatory) {
    if (!run_.firstEmptyCell(field, screen_.lastDataRow())) continue;
    show(message, styleOk);
    run_.refuse({Reason::ValueMissing, field, {}}, message);
    return false;
  }
  return true;
}

// The order of the checks decides what a record with several faults is refused for. A bill of 0 is
// looked at last, so that its balance is still warned of.
void OpeningImport::importRecord(std::size_t row) {
  const auto cell = [&](Field field) { return screen_.mappingList.cell(row, field); };
  Note note;
  note.code = cell(Code);
  note.reference = cell(Reference);
  if (!partyExists(note.code))
    return tell(Verdict::Refused, {Reason::UnknownParty, Code, note.code}, note.code);
  const std::optional<Date> date = documentDate(row, note.code);
  if (!date) return;
  note.date = *date;
  note.bill = amount(row, BillAmount, note.code);
  note.balance = amount(row, Balance, note.code);
  if (std::abs(note.bill) < std::abs(note.balance)) {
    // A warning only: the document is posted all the same, and the user finds it by the log.
    const Finding why{Reason::BalanceAboveBill, Balance, std::string(cell(Balance))};
    tell(Verdict::Warned, why, note.code);
  }
  if (note.bill == 0) {
    return run_.found(Verdict::Skipped,
                      {Reason::ZeroAmount, BillAmount, std::string(cell(BillAmount))});
  }
  post(note);
}

double OpeningImport::amount(std::size_t row, std::size_t field, std::string_view code) {
  const std::string_view text = screen_.mappingList.cell(row, field);
  try {
    return leadingNumber(text);
  } catch (const RuntimeError&) {  // it is beyond the range of numbers
    const std::string name = joined(screen_.fields()[field].title, "(");
    run_.raise(ErrorNumber::Overflow, ofParty(name, text, code));
  }
}

std::string OpeningImport::ofParty(std::string_view what, std::string_view text,
                                   std::string_view code) const {
  return joined(what, text).append(kind_.forParty).append(code);
}

// Empty if the record was refused for its date. Vendors' dates have no refusal: one that cannot be
// read ends the run, and what comes before it stays posted.
std::optional<Date> OpeningImport::documentDate(std::size_t row, std::string_view code) {
  const std::string_view text = screen_.mappingList.cell(row, DocDate);
  if (text.empty()) return dateOfUndated(transDate_);
  const std::optional<DateReading> reading = readDate(text, currentYear_);
  if (!reading) {
    if (kind_.badDateEndsRun) {
      run_.raise(ErrorNumber::TypeMismatch, ofParty(invalidDate, text, code));
    }
    tell(Verdict::Refused, {Reason::DateUnreadable, DocDate, std::string(text)}, code);
    return std::nullopt;
  }
  const Date date = dateFromCivil(civilFromDate(reading->date));  // without a time of day
  if (date < transDate_) return date;
  tell(Verdict::Refused, {Reason::DateTooLate, DocDate, std::string(text)}, code);
  return std::nullopt;
}

// Amounts go without a sign: the note's procedure carries it, and only the entry's balance has one.
void OpeningImport::post(const Note& note) {
  const bool debit = note.bill > 0;
  const double balance = std::abs(note.balance);
  const std::string narration;
  const std::array<ProcedureParameter, 6> document{{{note.code, DataType::VarChar},
                                                    {note.reference, DataType::VarChar},
                                                    {note.date, DataType::Date},
                                                    {std::abs(note.bill), DataType::Double},
                                                    {balance, DataType::Double},
                                                    {narration, DataType::VarChar}}};
  // The account entry follows a note that failed, too: whether it did is not looked at, and the
  // accounts of companies that imported so rest on it.
  const std::array<ProcedureParameter, 2> account{
      {{note.code, DataType::VarChar}, {debit ? balance : -balance, DataType::Double}}};
  run_.postBoth(screen_.connection(), {debit ? kind_.debitNote : kind_.creditNote, document},
                {kind_.openingBalance, account});
}

void OpeningImport::tell(Verdict verdict, const Finding& why, std::string_view code) {
  run_.found(verdict, why, logLine(why, code));
  errorFlag_ = true;
}

std::string OpeningImport::logLine(const Finding& why, std::string_view code) const {
  switch (why.reason) {
    case Reason::UnknownParty:
      return joined(kind_.unknownParty, code);
    case Reason::DateUnreadable:
      return ofParty(invalidDate, why.text, code);
    case Reason::DateTooLate:
      return "You cannot import for the date greater than 1st Transaction Date(" +
             formatDayFirst(transDate_) + joined(kind_.forParty, code);
    default:
      return joined(kind_.balanceTooBig, code);
  }
}

// A query that fails, as for a code with a quote in it, counts as unknown.
bool OpeningImport::partyExists(std::string_view code) {
  try {
    const auto reply = screen_.connection().Execute(partyQuery(kind_, code));
    const bool exists = Velk_ModOpnImp::ValOrZero(reply->field(0)) > 0;
    reply->Close();
    return exists;
  } catch (const RuntimeError&) {
    return false;
  }
}

// Without one every dated record is refused.
Date OpeningImport::GetTransDate() {
  return firstTransactionDate(screen_.connection(), screen_.desktop().currentYear());
}

Date OpeningImport::GetServerDate() {
  return answeredDate(screen_.connection(), "SELECT GETDATE()", screen_.desktop().currentYear());
}

}  // namespace velk
