#include "apps/opnimp/warnings/amount_check.h"

#include <algorithm>
#include <string>

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

namespace {

bool has(std::string_view text, char c) {
  return std::ranges::count(text, c) > 0;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isBeyondRange(const std::string& number) {
  try {
    leadingNumber(number);
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

bool hasDecimalComma(std::string_view text) {
  // checkAmount has found a digit before; the sign or currency before it does not matter.
  const std::string_view number = text.substr(text.find_first_of("0123456789,"));
  return has(number, ',') && !groupsDigits(number);
}

}  // namespace

// Each check may rely on what those before it exclude.
WarningText checkAmount(std::string_view cell) {
  const std::string_view text = trim(cell);
  std::string read(text);  // the import reads an amount without its commas
  std::erase(read, ',');
  if (text.empty()) return {};
  if (std::ranges::none_of(text, isDigit))
    return {"amount-not-a-number", "A text without a number reads as 0; a bill of 0 is skipped."};
  if (isBeyondRange(read))
    return {"amount-too-large",
            "An amount is beyond the range of numbers: the import stops at this record. Correct it "
            "first."};
  if (hasDecimalComma(text))
    return {"amount-decimal-comma",
            "Commas are dropped and only a point marks decimals: \"1.234,50\" reads as 1.2345 and "
            "\"12,50\" as 1250."};
  // Most amounts end here: what follows is about those of which only a part is read.
  if (parseNumber(read)) return {};
  if (has(read, '('))
    return {"amount-in-parentheses",
            "An amount in parentheses reads as 0. Write a negative amount with a minus in front."};
  if (read.ends_with('-'))
    return {"amount-trailing-minus",
            "A minus behind an amount is not seen: it reads as positive. Write it in front."};
  if (!has("+-.0123456789", read.front()))
    return {"amount-currency", "An amount with a currency sign or other text in front reads as 0."};
  if (has(read, ' '))
    return {"amount-blank-inside", "An amount ends at a blank inside it: 1 234 reads as 1."};
  return {"amount-partly-read",
          "Only the number at the start of an amount is read, the rest is ignored."};
}

}  // namespace velk
