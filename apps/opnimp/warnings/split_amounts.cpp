#include "apps/opnimp/warnings/split_amounts.h"

#include <algorithm>

#include "apps/opnimp/warnings/row_check.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

constexpr std::size_t longestGroup = 3;
constexpr std::size_t usualCents = 2;

bool isHead(std::string_view digits) {
  return digits.size() <= longestGroup && digits.front() != '0';
}

bool isGroup(std::string_view digits, bool hasPoint) {
  const bool isCents = digits.size() == usualCents && digits.front() == '0' && !hasPoint;
  return digits.size() == longestGroup || isCents;
}

/// As a value stands in the file. What is quoted is whole.
CellShape shapeOf(std::string_view written) {
  CellShape shape;
  std::string_view text = trim(written);
  shape.isBlank = text.empty() || text == "\"\"";
  const bool isQuoted = text.starts_with('"');
  std::string digits(text);
  if (isQuoted) std::erase_if(digits, [](char c) { return c == '"' || c == ','; });
  const bool isNegative = digits.starts_with('-');
  if (isNegative) digits.erase(0, 1);
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::string_view whole = std::string_view(digits).substr(0, point);
  const std::string_view cents =
      std::string_view(digits).substr(std::min(point + 1, digits.size()));
  shape.isNumber =
      !whole.empty() && std::ranges::all_of(whole, isDigit) && std::ranges::all_of(cents, isDigit);
  if (!shape.isNumber) return shape;
  if (!cents.empty()) shape.cents = cents.size();
  shape.endsInZero = cents.ends_with('0');
  const bool hasPoint = point < digits.size();
  shape.isHead = !isQuoted && !hasPoint && isHead(whole);
  shape.isGroup = !isQuoted && !isNegative && isGroup(whole, hasPoint);
  shape.startsWithZero = shape.isGroup && whole.front() == '0';
  if (shape.isHead || shape.isGroup) shape.value = leadingNumber(digits);
  return shape;
}

bool hasUsualCents(const CellShape& shape) {
  return shape.cents == usualCents;
}

}  // namespace

SplitAmounts::SplitAmounts(const CheckedFile& file) : file_(file) {
  // Only commas split amounts, and only where they separate.
  if (file.kind.opening == nullptr || !file.input.conversion().isSplitAtCommas) return;
  columns_.resize(file.columns);
  for (std::size_t field = 0; field < file.mapping.size(); ++field) {
    const auto column = file.mapping[field].column;
    if (!column || *column >= columns_.size()) continue;
    const bool isAmount = field == openingField::bill || field == openingField::balance;
    columns_[*column].isAmount = isAmount;
    columns_[*column].isText = field == openingField::name || field == openingField::reference;
    if (isAmount) amounts_.push_back(*column);
  }
  std::ranges::sort(amounts_);
}

void SplitAmounts::check(const CheckedRecord& record) {
  if (amounts_.empty()) return;
  read(record);
  Doubt doubt{record.record, false, false, false};
  for (const std::size_t column : amounts_) {
    if (!isSplitAt(column)) continue;
    doubt.isSure = doubt.isSure || isSure(column);
    doubt.hasCents =
        doubt.hasCents || (hasUsualCents(row_[column + 1]) && !columns_[column + 1].isAmount);
    doubt.hasNumberBehind = doubt.hasNumberBehind || hasNumberBehind(column, false);
  }
  learn(doubt.hasNumberBehind);
  // Most files have small amounts side by side: of these nothing is kept.
  if (doubt.isSure || doubt.hasCents || doubt.hasNumberBehind) doubts_.push_back(doubt);
}

// Values in front of the amounts are where they belong.
void SplitAmounts::read(const CheckedRecord& record) {
  row_.assign(columns_.size(), {});
  const std::size_t count = std::min(row_.size(), record.fields.size());
  for (std::size_t at = amounts_.front(); at < count; ++at) row_[at] = shapeOf(record.fields[at]);
}

bool SplitAmounts::isSplitAt(std::size_t column) const {
  return column + 1 < row_.size() && row_[column].isHead && row_[column + 1].isGroup;
}

bool SplitAmounts::isSure(std::size_t column) const {
  const CellShape& head = row_[column];
  const CellShape& group = row_[column + 1];
  const bool isNextAmount = columns_[column + 1].isAmount;
  if (group.startsWithZero && (isNextAmount || group.cents)) return true;
  if (!hasUsualCents(group)) return false;
  const bool isBillFirst = file_.mapping.at(openingField::bill).column == column;
  if (isNextAmount && isBillFirst && group.value > head.value) return true;
  const std::size_t second = column + 2;
  if (second + 1 < row_.size() && row_[second].isHead && row_[second + 1].isGroup &&
      !columns_[second].isAmount && hasUsualCents(row_[second + 1])) {
    return true;
  }
  for (std::size_t at = column + 1; at < row_.size(); ++at) {
    if (columns_[at].isText && row_[at].cents) return true;
  }
  return false;
}

// A number with cents, or two numbers. `onlyInTexts`: in columns that else have texts only.
bool SplitAmounts::hasNumberBehind(std::size_t column, bool onlyInTexts) const {
  std::size_t numbers = 0;
  for (std::size_t at = column + 1; at < row_.size(); ++at) {
    if (columns_[at].isAmount || !row_[at].isNumber) continue;
    if (onlyInTexts && (columns_[at].texts == 0 || columns_[at].numbers > 0)) continue;
    numbers += row_[at].cents ? 2 : 1;
  }
  return numbers >= 2;
}

// What the other rows say of how amounts are written, and of what the columns contain.
void SplitAmounts::learn(bool isDoubtful) {
  for (const std::size_t column : amounts_) {
    const bool isPart =
        isSplitAt(column) || (column > 0 && columns_[column - 1].isAmount && isSplitAt(column - 1));
    if (isPart || !row_[column].isNumber) continue;
    withCents_ += hasUsualCents(row_[column]) ? 1 : 0;
    endsInZero_ = endsInZero_ || row_[column].endsInZero;
    isMixed_ = isMixed_ || !hasUsualCents(row_[column]);
  }
  if (isDoubtful) return;
  for (std::size_t at = amounts_.front(); at < row_.size(); ++at) {
    if (row_[at].isBlank) continue;
    ++(row_[at].isNumber ? columns_[at].numbers : columns_[at].texts);
  }
}

bool SplitAmounts::isProved(const Doubt& doubt) {
  if (doubt.isSure) return true;
  if (doubt.hasCents && withCents_ > 0 && endsInZero_ && !isMixed_) return true;
  if (!doubt.hasNumberBehind) return false;
  read({file_, doubt.record});
  return std::ranges::any_of(amounts_, [&](std::size_t column) {
    return isSplitAt(column) && hasNumberBehind(column, true);
  });
}

void SplitAmounts::finish(std::vector<Warning>& warnings) {
  for (const Doubt& doubt : doubts_) {
    if (!isProved(doubt)) continue;
    addWarning(warnings, WarningId::SplitAmount, misreadRow({file_, doubt.record}));
  }
}

}  // namespace velk
