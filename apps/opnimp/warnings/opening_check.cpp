#include "apps/opnimp/warnings/opening_check.h"

#include <algorithm>
#include <cmath>

#include "apps/opnimp/records/posted_values.h"
#include "apps/opnimp/warnings/amount_check.h"
#include "apps/opnimp/warnings/date_check.h"
#include "apps/opnimp/warnings/row_check.h"
#include "apps/opnimp/warnings/text_check.h"
#include "base/text.h"
#include "base/values.h"

namespace velk {

namespace {

/// How many times the next largest sum a party's must be, to be far from all others.
constexpr double farFromOthers = 50;
/// With fewer parties there is nothing to compare with.
constexpr std::size_t fewestParties = 3;

/// As the import reads it; empty beyond the range of numbers, where it stops.
std::optional<double> amountOf(const CheckedRecord& record, std::size_t field) {
  const Value amount = postedAmount(record.read(field));
  const auto* const number = std::get_if<double>(&amount);
  return number != nullptr ? std::optional(*number) : std::nullopt;
}

std::string textOf(const std::optional<double>& amount) {
  return amount ? toText(Value(*amount)) : "no number, and the import stops there";
}

/// `skips`: the record has a bill that reads as 0.
void checkAmountOf(const CheckedRecord& record, std::size_t field,
                   const std::optional<double>& amount, bool skips,
                   std::vector<Warning>& warnings) {
  std::string text = withoutQuotes(record.written(field));
  const auto doubt = checkAmount(text);
  if (!doubt) return;
  Misreading reading = record.misreading(field, std::move(text), textOf(amount));
  reading.skips = skips;
  addWarning(warnings, *doubt, std::move(reading));
}

/// Of what windows-1252 has: controls but for those that lines and columns are made with, U+00A0
/// and U+00AD.
bool hasUnseen(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const bool isLead = byte == 0xC2 && at + 1 < text.size();
    const auto character = isLead ? static_cast<unsigned char>(text[++at]) : byte;
    const bool isControl =
        character < 0x20 && character != '\t' && character != '\r' && character != '\n';
    if (isLead ? character <= 0xA0 || character == 0xAD : isControl || character == 0x7F) {
      return true;
    }
  }
  return false;
}

void checkCode(const CheckedRecord& record, std::vector<Warning>& warnings) {
  const std::string code = record.read(openingField::code);
  checkText(record, openingField::code, warnings);
  if (hasUnseen(code)) {
    addWarning(warnings, WarningId::UnseenInCode,
               record.misreading(openingField::code, code, "the code, unseen character included"));
  }
  if (trim(code) == code) return;
  addWarning(warnings, WarningId::BlanksAroundCode,
             record.misreading(openingField::code, code, "\"" + code + "\", blanks included"));
}

}  // namespace

void OpeningCheck::check(const CheckedRecord& record, bool repeated,
                         std::vector<Warning>& warnings) {
  const std::string party = comparedText(record.read(openingField::code));
  checkCode(record, warnings);
  checkText(record, openingField::reference, warnings);
  // An equal row is a warning already.
  if (!repeated) checkReference(record, party, warnings);
  checkDocumentDate(record, warnings);
  checkAmounts(record, party, warnings);
}

void OpeningCheck::finish(std::vector<Warning>& warnings) const {
  for (const Misreading& reading : bothWays_) {
    if (monthFirst_) {
      addWarning(warnings, WarningId::DateOrderUncertain, reading);
    } else {
      addWarning(warnings, WarningId::DateReadsBothWays, reading.line, reading.field);
    }
  }
  warnOfSums(warnings);
}

void OpeningCheck::checkReference(const CheckedRecord& record, const std::string& party,
                                  std::vector<Warning>& warnings) {
  const std::string reference = record.read(openingField::reference);
  const std::string key = comparedText(reference);
  if (key.empty()) return checkEqual(record, party, warnings);
  const auto [earlier, isNew] = lines_.emplace(party + '\0' + key, record.line());
  if (isNew) return;
  addWarning(warnings, WarningId::SameReference,
             record.misreading(
                 openingField::reference, reference,
                 "a further document beside that of line " + std::to_string(earlier->second)));
}

// As the journal knows records again: whatever else the rows have, the same is posted twice.
void OpeningCheck::checkEqual(const CheckedRecord& record, const std::string& party,
                              std::vector<Warning>& warnings) {
  if (party.empty()) return;  // such records are refused
  const Value bill = postedAmount(record.read(openingField::bill));
  const Value balance = postedAmount(record.read(openingField::balance));
  std::string key = party;
  for (const Value& posted : {postedDay(record.read(openingField::date), file_.currentYear), bill,
                              postedBalance(bill, balance)}) {
    key.append(1, '\0').append(toText(posted));
  }
  const auto [earlier, isNew] = nameless_.emplace(std::move(key), record.line());
  if (isNew) return;
  Misreading equal = misreadRow(record);
  equal.readAs = "what line " + std::to_string(earlier->second) + " posts, once more";
  addWarning(warnings, WarningId::EqualRows, std::move(equal));
}

void OpeningCheck::checkDocumentDate(const CheckedRecord& record, std::vector<Warning>& warnings) {
  const std::string text = record.read(openingField::date);
  // Without a text for invalid dates, the kind raises an error for them, which ends its run.
  const auto doubt = checkDate(text, file_.currentYear, file_.kind.opening->badDateEndsRun);
  if (!doubt) return;
  Misreading reading = record.misreading(openingField::date, text, doubt->readAs);
  if (doubt->id == WarningId::DateReadsBothWays) {
    bothWays_.push_back(std::move(reading));
  } else if (doubt->id == WarningId::DateMonthFirst) {
    monthFirst_ = true;
    addWarning(warnings, doubt->id, record.line(), reading.field);
  } else {
    addWarning(warnings, doubt->id, std::move(reading));
  }
}

void OpeningCheck::checkAmounts(const CheckedRecord& record, const std::string& party,
                                std::vector<Warning>& warnings) {
  const auto bill = amountOf(record, openingField::bill);
  const auto balance = amountOf(record, openingField::balance);
  checkAmountOf(record, openingField::bill, bill, bill == 0, warnings);
  checkAmountOf(record, openingField::balance, balance, bill == 0, warnings);
  if (!bill || !balance) return;
  if (*bill * *balance < 0) {
    addWarning(warnings, WarningId::OppositeSigns,
               record.misreading(openingField::balance, record.read(openingField::balance),
                                 textOf(-*balance)));
  }
  parties_.try_emplace(party, Party{0, record.line()}).first->second.sum += *balance;
}

void OpeningCheck::warnOfSums(std::vector<Warning>& warnings) const {
  if (parties_.size() < fewestParties) return;
  std::vector<Party> parties;
  for (const auto& [code, party] : parties_) parties.push_back({std::abs(party.sum), party.line});
  std::ranges::partial_sort(parties, parties.begin() + 2, std::ranges::greater(), &Party::sum);
  if (parties[1].sum > 0 && parties[0].sum > farFromOthers * parties[1].sum) {
    addWarning(warnings, WarningId::SumFarFromOthers, parties[0].line,
               file_.mapping.at(openingField::balance).field);
  }
}

}  // namespace velk
