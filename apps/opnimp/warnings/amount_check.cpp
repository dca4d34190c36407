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

/// An exponent that the import reads and that a person hardly meant, as in a code or a cell in
/// scientific format.
bool hasExponent(std::string_view number) {
  const std::size_t letter = number.find_first_not_of("+-.0123456789");
  if (letter == std::string_view::npos || !has("eEdD", number[letter])) return false;
  std::string_view power = number.substr(letter + 1);
  if (power.starts_with('+') || power.starts_with('-')) power.remove_prefix(1);
  return letter > 0 && !power.empty() && isDigit(power.front());
}

}  // namespace

// Each check may rely on what those before it exclude.
std::optional<WarningId> checkAmount(std::string_view cell) {
  const std::string_view text = trim(cell);
  std::string read(text);  // the import reads an amount without its commas
  std::erase(read, ',');
  if (text.empty()) return std::nullopt;
  if (std::ranges::none_of(text, isDigit)) return WarningId::AmountNotANumber;
  if (isBeyondRange(read)) return WarningId::AmountTooLarge;
  if (hasDecimalComma(text)) return WarningId::AmountDecimalComma;
  if (hasExponent(read)) return WarningId::AmountExponent;
  // Most amounts end here: what follows is about those of which only a part is read.
  if (parseNumber(read)) return std::nullopt;
  if (has(read, '(')) return WarningId::AmountInParentheses;
  if (read.ends_with('-')) return WarningId::AmountTrailingMinus;
  if (!has("+-.0123456789", read.front())) return WarningId::AmountCurrency;
  return has(read, ' ') ? WarningId::AmountBlankInside : WarningId::AmountPartlyRead;
}

}  // namespace velk
