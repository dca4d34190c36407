#include "apps/opnimp/convert/shown_amounts.h"

#include <algorithm>

#include "apps/opnimp/cli/printable.h"
#include "base/text.h"

namespace velk {

namespace {

enum class ShownSign { None, Plus, Minus, Contradictory };

bool hasMark(const AmountText& amount) {
  return amount.isBelowZero || amount.has(AmountForm::DebitCredit);
}

/// "-100.00 Cr" is what a format makes of a number below zero whose mark is meant for others.
ShownSign signOf(const std::optional<AmountText>& amount, std::string_view shown) {
  if (!amount) {
    const auto rest = shown.starts_with('-') ? readAmount(trim(shown.substr(1))) : std::nullopt;
    return rest && hasMark(*rest) ? ShownSign::Contradictory : ShownSign::None;
  }
  if (!hasMark(*amount)) return ShownSign::None;
  return amount->isBelowZero ? ShownSign::Minus : ShownSign::Plus;
}

}  // namespace

void ShownAmounts::add(const SheetCell& cell, ValueSurvey& survey) {
  const std::string_view shown = trim(cell.text);
  const std::optional<AmountText> amount = readAmount(shown);
  if (amount) survey.addCurrency(*amount, shown, cell.row);
  if (shown.ends_with('%')) percents_.add(shown, cell.row);
  if (cell.value == 0 || (amount && amount->isZero())) return;
  const ShownSign sign = signOf(amount, shown);
  const ShownSign own = cell.value < 0 ? ShownSign::Minus : ShownSign::Plus;
  if (sign != ShownSign::None) {
    if (sign != own) others_.add(shown, cell.row);
  } else if (amount && cell.value < 0) {
    bare_.add(shown, cell.row);
  }
}

std::string ShownAmounts::refusal() const {
  if (percents_) {
    return counted(percents_.count, "amount is", "amounts are") +
           " shown as percentages, the first being " + percents_.first() +
           ": give the cells the format General, and correct their values";
  }
  if (!others_) return {};
  return counted(others_.count, "amount shows", "amounts show") +
         " another sign than the number in the cell has, the first being " + others_.first() +
         ": give the cells the format General, and correct their signs";
}

std::optional<Assumption> ShownAmounts::assumption() const {
  if (!bare_) return std::nullopt;
  return Assumption{"amounts below zero", "below zero",
                    counted(bare_.count, "amount is", "amounts are") +
                        " shown without a sign, the first " + bare_.first(),
                    ""};
}

}  // namespace velk
