#include "apps/opnimp/warnings/amount_check.h"

#include <string>

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

struct Amount {
  std::string_view text;  ///< as it is in the file, trimmed
  std::string read;       ///< as the import reads it: without its commas
};

bool has(std::string_view text, char c) {
  return std::ranges::count(text, c) > 0;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isBeyondRange(const Amount& amount) {
  try {
    leadingNumber(amount.read);
    return false;
  } catch (const RuntimeError&) {
    return true;
  }
}

/// Commas that group digits in thousands, or in lakhs: the last group before the point has three
/// digits, those before it two or three.
bool groupsDigits(std::string_view number) {
  std::string_view whole = number.substr(0, number.find('.'));
  if (has(number.substr(whole.size()), ',')) return false;
  std::size_t shortest = 3;
  for (std::size_t comma; (comma = whole.rfind(',')) != std::string_view::npos; shortest = 2) {
    const std::string_view group = whole.substr(comma + 1);
    if (!std::ranges::all_of(group, isDigit) || group.size() < shortest || group.size() > 3) {
      return false;
    }
    whole = whole.substr(0, comma);
  }
  return !whole.empty() && isDigit(whole.back());
}

bool hasDecimalComma(const Amount& amount) {
  const std::string_view number = amount.text.substr(amount.text.find_first_of("0123456789,"));
  return has(number, ',') && !groupsDigits(number);
}

bool startsWithText(const Amount& amount) {
  return !has("+-.0123456789", amount.read.front());
}

// The first that applies counts, so each row may rely on what those above it exclude.
constexpr WarningCheck<Amount> amountChecks[] = {
    {{}, [](const Amount& a) { return a.text.empty(); }},
    {{"amount-not-a-number", "A text without a number reads as 0; a bill of 0 is skipped."},
     [](const Amount& a) { return std::ranges::none_of(a.text, isDigit); }},
    {{"amount-too-large",
      "An amount is beyond the range of numbers: the import stops at this record. Correct it "
      "first."},
     isBeyondRange},
    {{"amount-decimal-comma",
      "Commas are dropped and only a point marks decimals: \"1.234,50\" reads as 1.2345 and "
      "\"12,50\" as 1250."},
     hasDecimalComma},
    {{}, [](const Amount& a) { return parseNumber(a.read).has_value(); }},
    {{"amount-in-parentheses",
      "An amount in parentheses reads as 0. Write a negative amount with a minus in front."},
     [](const Amount& a) { return has(a.read, '('); }},
    {{"amount-trailing-minus",
      "A minus behind an amount is not seen: it reads as positive. Write it in front."},
     [](const Amount& a) { return a.read.ends_with('-'); }},
    {{"amount-currency", "An amount with a currency sign or other text in front reads as 0."},
     startsWithText},
    {{"amount-blank-inside", "An amount ends at a blank inside it: 1 234 reads as 1."},
     [](const Amount& a) { return has(a.read, ' '); }},
    {{"amount-partly-read",
      "Only the number at the start of an amount is read, the rest is ignored."},
     [](const Amount&) { return true; }},
};

}  // namespace

WarningText checkAmount(std::string_view cell) {
  Amount amount{trim(cell), std::string(trim(cell))};
  std::erase(amount.read, ',');
  return firstWarning(amountChecks, amount);
}

}  // namespace velk
