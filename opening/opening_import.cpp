#include "opening/opening_import.h"

#include <array>
#include <cmath>
#include <utility>

#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"

namespace velk {

namespace {

enum Field : std::size_t { Code = 0, Reference = 2, DocDate = 3, BillAmount = 4, Balance = 5 };

std::string joined(std::string_view a, std::string_view b) {
  return std::string(a).append(b);
}

}  // namespace

void OpeningImport::cmdImport_Click() {
  currentYear_ = currentYear(screen_.desktop());
  transDate_ = GetTransDate();
  if (fieldsAreMapped()) {
    screen_.forEachRecord([this](std::size_t row) { importRecord(row); });
    sayCompleted();
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

bool OpeningImport::fieldsAreMapped() {
  const std::array<std::pair<Field, std::string_view>, 3> mandatory{
      {{Code, kind_.idNotMapped},
       {BillAmount, "Bill Amount is Mandatory.Its not been Mapped"},
       {Balance, "Balance is Mandatory.Its not been Mapped"}}};
  for (const auto& [field, message] : mandatory) {
    if (screen_.firstEmptyCell(field)) {
      show(message, styleOk);
      return false;
    }
  }
  return true;
}

void OpeningImport::importRecord(std::size_t row) {
  const auto cell = [&](Field field) { return screen_.mappingList.cell(row, field); };
  Note note;
  note.code = cell(Code);
  note.reference = cell(Reference);
  if (!partyExists(note.code)) return reject(joined(kind_.unknownParty, note.code));
  const std::optional<Date> date = documentDate(row, note.code);
  if (!date) return;
  note.date = *date;
  note.bill = leadingNumber(cell(BillAmount));
  note.balance = leadingNumber(cell(Balance));
  // A warning only, intended: the record is posted all the same.
  if (std::abs(note.bill) < std::abs(note.balance)) reject(joined(kind_.balanceTooBig, note.code));
  if (note.bill != 0) post(note);
}

std::optional<Date> OpeningImport::documentDate(std::size_t row, std::string_view code) {
  const std::string_view text = screen_.mappingList.cell(row, DocDate);
  if (text.empty()) return Date{transDate_.days - 1};
  const std::optional<DateReading> reading = readDate(text, currentYear_);
  if (!reading) {
    if (kind_.invalidDate.empty()) throw RuntimeError(ErrorNumber::TypeMismatch);
    reject(joined(kind_.invalidDate, text).append(kind_.forParty).append(code));
    return std::nullopt;
  }
  const Date date = dateFromCivil(civilFromDate(reading->date));  // without a time of day
  if (date >= transDate_) {
    reject("You cannot import for the date greater than 1st Transaction Date(" +
           formatDayFirst(transDate_) + joined(kind_.forParty, code));
    return std::nullopt;
  }
  return date;
}

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
  call(debit ? kind_.debitNote : kind_.creditNote, document);
  // Whether the note was posted is not looked at, intended: the account entry always follows.
  const std::array<ProcedureParameter, 2> account{
      {{note.code, DataType::VarChar}, {debit ? balance : -balance, DataType::Double}}};
  call(kind_.openingBalance, account);
}

void OpeningImport::call(std::string_view procedure,
                         std::span<const ProcedureParameter> parameters) {
  auto reply = module_.ExecuteProcedure(screen_.connection(), procedure, parameters);
  Velk_ModOpnImp::GetDataRecordset(std::move(reply));
}

void OpeningImport::reject(std::string_view line) {
  module_.WriteErrorLog(line);
  errorFlag_ = true;
}

bool OpeningImport::partyExists(std::string_view code) {
  try {
    const auto reply = screen_.connection().Execute(joined(kind_.existsQuery, code).append("'"));
    const bool exists = Velk_ModOpnImp::ValOrZero(reply->field(0)) > 0;
    reply->Close();
    return exists;
  } catch (const RuntimeError&) {
    return false;
  }
}

Date OpeningImport::queryDate(std::string_view query) {
  Date date;
  const auto reply = screen_.connection().Execute(query);
  if (!(reply->isBOF() && reply->isEOF())) {
    date = toDate(reply->field(0), currentYear(screen_.desktop()));
  }
  reply->Close();
  return date;
}

Date OpeningImport::GetTransDate() {
  return queryDate("SELECT TOP 1 OpeningDate FROM Setup");
}

Date OpeningImport::GetServerDate() {
  return queryDate("SELECT GETDATE()");
}

}  // namespace velk
