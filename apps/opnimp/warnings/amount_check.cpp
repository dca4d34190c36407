#include "apps/opnimp/warnings/amount_check.h"

#include <algorithm>
#include <string>

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

constexpr AmountIssue beyondRange{
    "amount-too-large",
    "An amount is beyond the range of numbers: the import stops at this record. Correct it first."};
constexpr AmountIssue parentheses{
    "amount-in-parentheses",
    "An amount in parentheses reads as 0. Write a negative amount with a minus in front."};
constexpr AmountIssue trailingMinus{
    "amount-trailing-minus",
    "A minus behind an amount is not seen: it reads as positive. Write it in front."};
constexpr AmountIssue decimalComma{"amount-decimal-comma",
                                   "Commas are dropped and only a point marks decimals: "
                                   "\"1.234,50\" reads as 1.2345 and \"12,50\" "
                                   "as 1250."};
constexpr AmountIssue currency{"amount-currency",
                               "An amount with a currency sign or other text in front reads as 0."};
constexpr AmountIssue blankInside{"amount-blank-inside",
                                  "An amount ends at a blank inside it: 1 234 reads as 1."};
constexpr AmountIssue notANumber{"amount-not-a-number",
                                 "A text without a number reads as 0; a bill of 0 is skipped."};
constexpr AmountIssue partlyRead{
    "amount-partly-read",
    "Only the number at the start of an amount is read, the rest is ignored."};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Commas that group digits in thousands, or in lakhs: the last group before the point has three
/// digits, those in front two or three.
bool groupsDigits(std::string_view text) {
  const std::string_view whole = text.substr(0, text.find('.'));
  if (text.find(',', whole.size()) != std::string_view::npos) return false;
  std::size_t groupEnd = whole.size();
  bool last = true;
  for (std::size_t comma = whole.rfind(','); comma != std::string_view::npos;
       comma = comma == 0 ? std::string_view::npos : whole.rfind(',', comma - 1)) {
    const std::string_view group = whole.substr(comma + 1, groupEnd - comma - 1);
    const bool digits = std::ranges::all_of(group, isDigit);
    if (!digits || (group.size() != 3 && (last || group.size() != 2))) return false;
    last = false;
    groupEnd = comma;
  }
  return groupEnd > 0 && isDigit(whole[groupEnd - 1]);
}

bool isTooLarge(std::string_view text) {
  try {
    leadingNumber(text);
    return false;
  } catch (const RuntimeError&) {
    return true;
  }
}

bool isWholeNumber(std::string_view text) {
  return parseNumber(text).has_value();
}

AmountIssue unreadIssue(std::string_view text) {
  if (text.find('(') != std::string_view::npos) return parentheses;
  if (text.ends_with('-')) return trailingMinus;
  constexpr std::string_view numberStart = "+-.0123456789";
  if (numberStart.find(text.front()) == std::string_view::npos) return currency;
  return text.find(' ') != std::string_view::npos ? blankInside : partlyRead;
}

}  // namespace

std::optional<AmountIssue> checkAmount(std::string_view cell) {
  const std::string_view text = trim(cell);
  if (text.empty()) return std::nullopt;
  std::string read(text);
  std::erase(read, ',');
  if (std::ranges::none_of(text, isDigit)) return notANumber;
  if (isTooLarge(read)) return beyondRange;
  const std::string_view number = text.substr(text.find_first_of("0123456789,"));
  if (number.find(',') != std::string_view::npos && !groupsDigits(number)) return decimalComma;
  if (isWholeNumber(read)) return std::nullopt;
  return unreadIssue(read);
}

}  // namespace velk
