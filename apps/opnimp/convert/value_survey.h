// What the dates and amounts of a file say, all together, of how they are written.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/convert_options.h"
#include "apps/opnimp/convert/amount_text.h"
#include "apps/opnimp/convert/assumption.h"
#include "apps/opnimp/convert/date_text.h"

namespace velk {

/// How many values there are of one sort, and the first of them.
struct ClueTally {
  std::size_t count = 0;
  std::string text;
  std::size_t line = 0;

  void add(std::string_view value, std::size_t at);
  explicit operator bool() const { return count > 0; }
  /// "12,50 in line 3".
  std::string first() const;
};

/// What becomes of dates and amounts.
struct ValueRules {
  std::optional<DateOrder> dateOrder;  ///< empty: dates stay as they are
  std::optional<char> decimal;         ///< empty: amounts stay as they are
  bool ordersAreSure = false;          ///< the order was given, or some date shows it
  bool decimalIsSure = false;          ///< the same of the decimal sign
  bool leavesCurrencies = false;       ///< there are several, which must not be added up
  std::string otherCurrency;           ///< the first amount that is not in that of the first
  bool changeValues = false;           ///< some value may be one to rewrite
  std::vector<Assumption> assumptions;
  std::vector<std::string> refusals;  ///< what the file does not decide, with the option to give
  std::vector<std::string> choices;   ///< what can be given
};

class ValueSurvey {
 public:
  /// Values are UTF-8, without blanks around them.
  void addDate(std::string_view text, std::size_t line);
  void addAmount(std::string_view text, std::size_t line);
  /// Of an amount whose value is known: the text that shows it.
  void addCurrency(const AmountText& amount, std::string_view text, std::size_t line);

  /// `isCanonical`: the file is laid out as the screens have it, and where its values decide
  /// nothing they are read as the screens do; those of another file are not guessed.
  ValueRules decide(const ConvertOptions& options, bool isCanonical) const;

 private:
  const ClueTally& dates(DateClue clue) const { return dates_[static_cast<std::size_t>(clue)]; }
  const ClueTally& signs(DecimalSign sign) const { return signs_[static_cast<std::size_t>(sign)]; }
  void decideDates(const ConvertOptions& options, bool isCanonical, ValueRules& rules) const;
  void findDateOrder(bool isCanonical, ValueRules& rules) const;
  void decideAmounts(const ConvertOptions& options, bool isCanonical, ValueRules& rules) const;
  void findDecimal(bool isCanonical, ValueRules& rules) const;
  void tellForms(ValueRules& rules) const;

  std::array<ClueTally, 5> dates_;  // by their clue
  ClueTally unread_;                // dates that the screens do not read
  std::array<ClueTally, 5> signs_;  // amounts by what they say of the decimal sign
  std::array<ClueTally, amountForms> forms_;
  std::string currency_;       // the first one
  ClueTally otherCurrencies_;  // amounts in another one
};

/// A value in the way that the screens read; empty if it stays as it is. `fits` becomes false if it
/// makes no sense by the rules.
std::optional<std::string> canonicalDateCell(std::string_view text, const ValueRules& rules,
                                             bool& fits);
std::optional<std::string> canonicalAmountCell(std::string_view text, const ValueRules& rules,
                                               bool& fits);

}  // namespace velk
