#include "apps/opnimp/warnings/column_survey.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "apps/opnimp/convert/amount_text.h"
#include "apps/opnimp/convert/date_text.h"
#include "apps/opnimp/convert/title_words.h"
#include "apps/opnimp/records/side_words.h"
#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

/// Years before the current one in which documents of an opening balance usually are.
constexpr int usualYears = 20;
/// With fewer values a number of five digits can be anything.
constexpr std::size_t fewestDays = 3;
constexpr std::size_t fewestReferences = 2;
/// So many tell what the rest is.
constexpr std::size_t mostReferences = 10'000;
/// Of ten values that look like references, or are different.
constexpr std::size_t nearlyAll = 9;

/// Words of titles of what has a number that is no document's.
constexpr auto otherThings = std::to_array<std::string_view>(
    {"account", "acct",      "address", "agent",    "area",  "bank",     "beat",   "cell",  "city",
     "code",    "contact",   "cst",     "email",    "fax",   "group",    "gst",    "gstin", "iban",
     "ifsc",    "limit",     "mail",    "mobile",   "name",  "pan",      "person", "phone", "pin",
     "pincode", "plz",       "postal",  "postcode", "route", "salesman", "street", "tax",   "tel",
     "telefon", "telephone", "tin",     "tngst",    "vat",   "zip",      "zone"});

/// Of titles of what is told by letters and is no side.
constexpr auto grades = std::to_array<std::string_view>(
    {"area", "categorie", "category", "class", "gender", "grade", "kategorie", "klasse", "rating",
     "region", "route", "ship", "status", "terms", "zone"});

/// Of titles of how a bill is paid, for which "Credit" stands, too.
constexpr auto payments = std::to_array<std::string_view>(
    {"bill", "cash", "invoice", "mode", "pay", "payment", "sale", "sales", "term", "terms"});

bool hasWord(std::string_view title, std::span<const std::string_view> words) {
  return std::ranges::any_of(
      wordsOf(title), [&](const std::string& word) { return std::ranges::count(words, word) > 0; });
}

/// As they are dialled.
bool isPhone(std::string_view text) {
  constexpr std::size_t longNumber = 10;
  if (text.find_first_not_of("0123456789+-(). /") != std::string_view::npos) return false;
  const auto digits = static_cast<std::size_t>(std::ranges::count_if(text, isDigit));
  return digits >= longNumber || text.find_first_of("0+(") == 0;
}

/// 123/08-09 is a document of a business year, and no day of the year 123.
std::optional<DateReading> usualDate(std::string_view text, int currentYear) {
  constexpr int longestAgo = 100;
  const auto reading = readDate(text, currentYear);
  const bool isUsual = reading && civilFromDate(reading->date).year > currentYear - longestAgo;
  return isUsual ? reading : std::nullopt;
}

bool isDocumentNumber(std::string_view text, int currentYear) {
  constexpr std::size_t longest = 30;
  constexpr std::ptrdiff_t fewestDigits = 3;
  // Addresses have more blanks.
  if (text.size() > longest || std::ranges::count(text, ' ') > 1) return false;
  if (std::ranges::count_if(text, isDigit) < fewestDigits) return false;
  if (text.find('@') != std::string_view::npos || isPhone(text)) return false;
  const auto date = usualDate(text, currentYear);
  return !parseNumber(text) && !readAmount(text) && !(date && date->hasYear && date->hasDay);
}

/// The sign of the bill by the leading-number rule: 0 beyond the range of numbers, too.
double billOf(const std::vector<std::string>& fields, const CheckedFile& file) {
  double bill = 0;
  trapErrors([&] { bill = leadingNumber(mappedCell(fields, file.mapping, openingField::bill)); },
             [](const RuntimeError&) {});
  return bill;
}

}  // namespace

ColumnSurvey::ColumnSurvey(const CheckedFile& file)
    : isOfVendors_(file.kind.name.starts_with("vendor")), currentYear_(file.currentYear) {
  if (file.kind.opening == nullptr) return;
  wantsDates_ = !file.isMapped(openingField::date);
  wantsReferences_ = !file.isMapped(openingField::reference);
  columns_.resize(file.columns);
  const std::vector<std::string> titles = file.input.titles();
  for (std::size_t at = 0; at < std::min(titles.size(), columns_.size()); ++at) {
    columns_[at].isAsked = !file.isPosted(at);
    columns_[at].isOther = columns_[at].isAsked && hasWord(titles[at], otherThings);
    columns_[at].isGrade = hasWord(titles[at], grades);
    columns_[at].creditOnly = hasWord(titles[at], payments);
  }
  for (std::size_t record = 0; record < file.input.count() && !isSettled(); ++record) {
    const auto fields = file.input.fields(record, file.columns);
    const double bill = billOf(fields, file);
    for (std::size_t at = 0; at < std::min(fields.size(), columns_.size()); ++at) {
      if (!columns_[at].isAsked) continue;
      if (const auto text = trim(fields[at]); !text.empty()) {
        look(columns_[at], std::string(text), bill);
      }
    }
  }
}

bool ColumnSurvey::isSettled() const {
  return std::ranges::none_of(columns_, [&](const Column& column) {
    return column.isAsked && (wantsDates_ || wantsReferences_ || column.sidesOnly);
  });
}

void ColumnSurvey::look(Column& column, const std::string& text, double bill) {
  ++column.values;
  if (column.sidesOnly) lookForSide(column, text, bill);
  if (wantsDates_) lookForDate(column, text);
  if (wantsReferences_ && column.looked < mostReferences) lookForReference(column, text);
}

void ColumnSurvey::lookForDate(Column& column, const std::string& text) const {
  if (usualDate(text, currentYear_) || readDateText(text).isUnread) {
    ++column.dates;
    return;
  }
  const auto number = exactNumber<int>(text);
  if (!number || *number < 0) return;
  const Date day{static_cast<double>(*number)};
  constexpr int latest = 100'000;  // in the 22nd century
  if (*number > latest) return;
  const int year = civilFromDate(day).year;
  if (year < currentYear_ - usualYears || year > currentYear_ + 1) return;
  if (column.days++ == 0) column.firstDay = day.days;
  column.daysDiffer = column.daysDiffer || day.days != column.firstDay;
  column.roundDays += *number % 10 == 0 ? 1U : 0U;
}

void ColumnSurvey::lookForReference(Column& column, const std::string& text) const {
  ++column.looked;
  if (column.isOther || !isDocumentNumber(text, currentYear_)) return;
  ++column.references;
  column.different.insert(upperAscii(text));
}

void ColumnSurvey::lookForSide(Column& column, const std::string& text, double bill) {
  const std::string word = lettersOfWords(wordsOf(text));
  const SideWord* const side = findSideWord(word);
  const bool isLetter = word.size() == 1;
  if (isLetter && column.letters.find(word) == std::string::npos) column.letters += word;
  column.sidesOnly = side != nullptr || (isLetter && column.letters.size() <= 2);
  // Alone it says how the bills are paid.
  column.creditOnly = column.creditOnly && word == "credit";
  if (!column.sidesOnly || bill == 0) return;
  const bool isCredit = isLetter ? isCreditLetter(word.front()) : side->isCredit;
  const bool isAgainst = isCredit == (bill > 0);
  if (!isLetter && side->isDocument) {
    column.noteAgainstSign = column.noteAgainstSign || isAgainst;
  } else {
    (isAgainst ? column.againstSign : column.alongSign) = true;
  }
}

bool ColumnSurvey::holdsDates(std::size_t column) const {
  if (!wantsDates_ || column >= columns_.size()) return false;
  const Column& seen = columns_[column];
  // Amounts are often round.
  const bool areDays = !seen.isOther && seen.days >= fewestDays && seen.days == seen.values &&
                       seen.daysDiffer && 2 * seen.roundDays < seen.days;
  return 2 * seen.dates > seen.values || areDays;
}

bool ColumnSurvey::holdsReferences(std::size_t column) const {
  if (!wantsReferences_ || column >= columns_.size()) return false;
  const Column& seen = columns_[column];
  return seen.references >= fewestReferences && 10 * seen.references >= nearlyAll * seen.looked &&
         10 * seen.different.size() >= nearlyAll * seen.references;
}

// What a vendor is owed is a credit in some books, and a debit in the file's.
bool ColumnSurvey::holdsSides(std::size_t column) const {
  if (column >= columns_.size()) return false;
  const Column& seen = columns_[column];
  if (seen.values == 0 || !seen.sidesOnly || seen.creditOnly) return false;
  const std::string& letters = seen.letters;
  const bool arePair = letters.size() == 2 && areSides(letters[0], letters[1]);
  if (!letters.empty() && (seen.isGrade || !arePair)) return false;
  return seen.noteAgainstSign || (seen.againstSign && (seen.alongSign || !isOfVendors_));
}

}  // namespace velk
