#include "apps/opnimp/warnings/lost_columns.h"

#include <algorithm>
#include <array>

#include "apps/opnimp/convert/title_words.h"
#include "apps/opnimp/records/title_suggestions.h"
#include "base/text.h"

namespace velk {

namespace {

/// A hostile header may have thousands of such titles.
constexpr std::size_t mostLost = 50;

constexpr std::string_view noDate = "nothing: the document gets the default date";
constexpr std::string_view noReference = "nothing: the document gets no reference";
constexpr std::string_view noSide = "nothing: only the sign of the amount counts";
constexpr std::string_view noValue = "nothing";

/// As people title the number of a document, beside its usual names.
bool isReferenceTitle(const std::string& name) {
  constexpr std::array<std::string_view, 10> names{"billno",  "billnum",  "invoice", "invno",
                                                   "voucher", "vchno",    "docno",   "documentno",
                                                   "docref",  "reference"};
  const auto contained = [&](std::string_view part) {
    return name.find(part) != std::string::npos;
  };
  // "Invoice Date" and "Invoice Amount" are no numbers of documents.
  if (contained("date") || contained("amount") || contained("value")) return false;
  // Beside the amount of the bill, which is mapped.
  return name == "bill" || name.starts_with("ref") || std::ranges::any_of(names, contained);
}

}  // namespace

// Only what could be meant for a field that has no other column, or for one that has another.
LostColumns::LostColumns(const CheckedFile& file) : survey_(file) {
  const ImportKind& kind = file.kind;
  // Such a file is refused as a whole.
  if (kind.columns != 0 && kind.columns != file.columns) return;
  const std::vector<std::string> titles = file.input.titles();
  if (kind.opening != nullptr) {
    dates_ = usualTitles(file.mapping.at(openingField::date).field, titles);
    references_ = usualTitles(file.mapping.at(openingField::reference).field, titles);
  }
  std::size_t column = 0;
  for (const std::string& title : titles) {
    if (lost_.size() == mostLost) return;
    if (!file.isPosted(column)) look(file, column, std::string(trim(title)));
    ++column;
  }
}

void LostColumns::look(const CheckedFile& file, std::size_t column, const std::string& title) {
  const auto twin = std::ranges::find_if(file.mapping, [&](const FieldMapping& entry) {
    return entry.column && entry.column != column && equalsIgnoringCase(trim(entry.title), title);
  });
  if (twin != file.mapping.end()) {
    lost_.push_back({column, title, WarningId::ColumnTwice, {}, twin->column});
  } else if (file.kind.opening != nullptr) {
    lookInOpening(file, column, title);
  } else {
    lookInMaster(file, column, title);
  }
}

// Such files may have columns for other purposes; only dates and references are recognised.
void LostColumns::lookInOpening(const CheckedFile& file, std::size_t column,
                                const std::string& title) {
  const std::vector<std::string> words = wordsOf(title);
  const std::string name = lettersOfWords(words);
  std::string_view readAs;
  if (!file.isMapped(openingField::date) &&
      (name.find("date") != std::string::npos || dates_.at(column) || survey_.holdsDates(column))) {
    readAs = noDate;
  } else if (!file.isMapped(openingField::reference) &&
             (isReferenceTitle(name) || references_.at(column) ||
              survey_.holdsReferences(column))) {
    readAs = noReference;
  } else if (isSideTitle(words) || survey_.holdsSides(column)) {
    readAs = noSide;
  } else {
    return;
  }
  lost_.push_back({column, title, WarningId::ColumnNotMapped, std::string(readAs), std::nullopt});
}

// These files have the columns of their kind and no others. One with the name of a field that is
// not mapped lacks its first value.
void LostColumns::lookInMaster(const CheckedFile& file, std::size_t column,
                               const std::string& title) {
  const bool isField = std::ranges::any_of(file.mapping, [&](const FieldMapping& entry) {
    return !entry.column && equalsIgnoringCase(trim(entry.field), title);
  });
  const WarningId warning = isField ? WarningId::FirstValueEmpty : WarningId::ColumnNotMapped;
  lost_.push_back({column, title, warning, std::string(noValue), std::nullopt});
}

void LostColumns::check(const CheckedRecord& record, std::vector<Warning>& warnings) const {
  const auto cell = [&](std::size_t column) {
    return column < record.fields.size() ? previewCell(record.fields[column]) : std::string();
  };
  for (const Lost& lost : lost_) {
    std::string text = cell(lost.column);
    if (lost.instead ? text == cell(*lost.instead) : trim(text).empty()) continue;
    const std::string readAs = lost.instead ? quotedOrNothing(cell(*lost.instead)) : lost.readAs;
    addWarning(warnings, lost.warning,
               Misreading{record.record, record.line(), lost.title, std::move(text), readAs});
  }
}

}  // namespace velk
