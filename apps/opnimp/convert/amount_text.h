// Amounts as people and programs write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velk {

/// What an amount says of the sign in front of its decimals.
enum class DecimalSign : std::uint8_t {
  None,          ///< nothing: 1234
  Point,         ///< 1,234.50 or 12.5 or 1,234,567
  Comma,         ///< 1.234,50 or 12,5 or 1.234.567
  PointOrGroup,  ///< 1.234
  CommaOrGroup   ///< 1,234
};

/// What an amount has beside its digits.
enum class AmountForm : std::uint8_t { Parentheses, Minus, DebitCredit, Currency, Gaps, NoCents };
inline constexpr int amountForms = 6;

struct AmountText {
  DecimalSign sign = DecimalSign::None;
  bool isBelowZero = false;
  unsigned forms = 0;    ///< a bit each
  std::string currency;  ///< its sign or letters
  std::string number;    ///< digits, points, commas, and a blank for each gap

  bool isZero() const { return number.find_first_of("123456789") == std::string::npos; }
  bool has(AmountForm form) const { return (forms >> static_cast<unsigned>(form) & 1U) != 0; }
};

/// For most amounts, which are digits and perhaps a point or a comma; empty if it takes readAmount.
std::optional<DecimalSign> plainAmountSign(std::string_view text);
/// The canonical amount for most of those whose mark is the decimal sign; empty if it takes more.
std::optional<std::string> canonicalPlainAmount(std::string_view text, char decimal);

/// `text` is UTF-8, without blanks around it. Empty for what is no amount from end to end: it is
/// left as it is.
std::optional<AmountText> readAmount(std::string_view text);

/// The amount with a point in front of its decimals and a minus in front of all; empty if it makes
/// no sense with `decimal`, which is a point or a comma.
std::optional<std::string> canonicalAmount(const AmountText& amount, char decimal);

}  // namespace velk
