#include "apps/opnimp/convert/value_survey.h"

#include <utility>

#include "apps/opnimp/cli/printable.h"

namespace velk {

namespace {

constexpr std::string_view dateOrderOption = "--date-order dmy, mdy or ymd";
constexpr std::string_view decimalOption = "--decimal point or comma";

struct FormText {
  std::string_view what;
  std::string_view value;
};
// In the order of AmountForm.
constexpr std::array<FormText, amountForms> formTexts{
    {{"amounts in parentheses", "below zero"},
     {"minus signs elsewhere than right before the digits", "below zero"},
     {"Dr and Cr", "Dr above zero, Cr below"},
     {"currency", "left out"},
     {"blanks and apostrophes within amounts", "left out"},
     {"dashes behind the decimal sign", "no cents"}}};

void assume(ValueRules& rules, std::string what, std::string value, std::string reason,
            std::string_view option) {
  rules.assumptions.push_back(
      {std::move(what), std::move(value), std::move(reason), std::string(option)});
}

void refuseDates(ValueRules& rules, std::string_view date, std::string why) {
  rules.refusals.push_back(std::move(why));
  rules.choices.insert(rules.choices.end(), {"--date-order dmy", "--date-order mdy"});
  // Two digits of a year may come first.
  if (canonicalDate(date, readDateText(date), DateOrder::YearMonthDay)) {
    rules.choices.emplace_back("--date-order ymd");
  }
}

void refuseAmounts(ValueRules& rules, std::string why) {
  rules.refusals.push_back(std::move(why));
  rules.choices.insert(rules.choices.end(), {"--decimal point", "--decimal comma"});
}

std::string conflictText(std::string_view what, const std::string& one, const std::string& other,
                         std::string_view option) {
  return std::string(what) + " contradict each other: " + one + ", " + other +
         ". Correct one of them; which is right say with " + std::string(option);
}

std::string_view nameOf(DateOrder order) {
  if (order == DateOrder::YearMonthDay) return "year first";
  return order == DateOrder::MonthDayYear ? "month first" : "day first";
}

/// What speaks for an order, and what follows it.
std::string counts(const ClueTally& clues, const ClueTally& either) {
  std::string text = clues.first();
  if (clues.count > 1) text += " and " + grouped(clues.count - 1) + " more";
  return either ? text + "; " + counted(either.count, "date reads", "dates read") + " both ways"
                : text;
}

}  // namespace

void ClueTally::add(std::string_view value, std::size_t at) {
  constexpr std::size_t shown = 80;
  if (count++ > 0) return;
  text = cutTo(printable(value), shown);
  line = at;
}

std::string ClueTally::first() const {
  return text + " in line " + grouped(line);
}

void ValueSurvey::addDate(std::string_view text, std::size_t line) {
  const DateText date = readDateText(text);
  dates_[static_cast<std::size_t>(date.clue)].add(text, line);
  if (date.isUnread) unread_.add(text, line);
}

void ValueSurvey::addAmount(std::string_view text, std::size_t line) {
  if (const auto sign = plainAmountSign(text)) {
    return signs_[static_cast<std::size_t>(*sign)].add(text, line);
  }
  const std::optional<AmountText> amount = readAmount(text);
  if (!amount) return;
  signs_[static_cast<std::size_t>(amount->sign)].add(text, line);
  for (std::size_t form = 0; form < forms_.size(); ++form) {
    if (amount->has(static_cast<AmountForm>(form))) forms_[form].add(text, line);
  }
  addCurrency(*amount, text, line);
}

void ValueSurvey::addCurrency(const AmountText& amount, std::string_view text, std::size_t line) {
  if (amount.currency.empty()) return;
  if (currency_.empty()) currency_ = amount.currency;
  if (currency_ != amount.currency) otherCurrencies_.add(text, line);
}

ValueRules ValueSurvey::decide(const ConvertOptions& options, bool isCanonical) const {
  ValueRules rules;
  decideDates(options, isCanonical, rules);
  decideAmounts(options, isCanonical, rules);
  return rules;
}

void ValueSurvey::decideDates(const ConvertOptions& options, bool isCanonical,
                              ValueRules& rules) const {
  if (options.dateOrder) {
    rules.dateOrder = options.dateOrder;
    rules.ordersAreSure = true;
    assume(rules, "dates", std::string(nameOf(*options.dateOrder)), options.origin("--date-order"),
           "");
  } else {
    findDateOrder(isCanonical, rules);
  }
  if (!rules.dateOrder) return;
  if (rules.dateOrder != DateOrder::DayMonthYear || dates(DateClue::MonthFirst) || unread_) {
    rules.changeValues = true;
  }
  if (!unread_) return;
  assume(rules, "dates of eight digits, or with T before the time", "year, month, day",
         unread_.first(), "");
}

void ValueSurvey::findDateOrder(bool isCanonical, ValueRules& rules) const {
  const ClueTally& day = dates(DateClue::DayFirst);
  const ClueTally& month = dates(DateClue::MonthFirst);
  const ClueTally& either = dates(DateClue::EitherFirst);
  if (day && month) {
    // In the format of the screens the warnings tell which dates would be taken how.
    if (isCanonical) return;
    refuseDates(rules, day.text,
                conflictText("dates", day.first() + " has the day first",
                             month.first() + " the month", dateOrderOption));
    return;
  }
  if (!day && !month && either && !isCanonical) {
    refuseDates(rules, either.text,
                "all dates read day first and month first, such as " + either.first() +
                    ": say which it is with " + std::string(dateOrderOption));
    return;
  }
  rules.ordersAreSure = month || day;
  rules.dateOrder = month ? DateOrder::MonthDayYear : DateOrder::DayMonthYear;
  if (month || (day && (either || !isCanonical))) {
    assume(rules, "dates", std::string(nameOf(*rules.dateOrder)),
           counts(month ? month : day, either), dateOrderOption);
  } else if (either) {
    assume(rules, "dates", "day first",
           "all read both ways, such as " + either.first() + ", and the screens take the day first",
           dateOrderOption);
  }
}

void ValueSurvey::decideAmounts(const ConvertOptions& options, bool isCanonical,
                                ValueRules& rules) const {
  if (options.decimal) {
    rules.decimal = options.decimal;
    rules.decimalIsSure = true;
    assume(rules, "decimal sign", options.decimal == ',' ? "comma" : "point",
           options.origin("--decimal"), "");
  } else {
    findDecimal(isCanonical, rules);
  }
  if (!rules.decimal) return;
  if (rules.decimal == ',' || signs(DecimalSign::Comma)) rules.changeValues = true;
  tellForms(rules);
}

void ValueSurvey::findDecimal(bool isCanonical, ValueRules& rules) const {
  const ClueTally& point = signs(DecimalSign::Point);
  const ClueTally& comma = signs(DecimalSign::Comma);
  const ClueTally& groupedByComma = signs(DecimalSign::CommaOrGroup);
  const ClueTally& either = groupedByComma ? groupedByComma : signs(DecimalSign::PointOrGroup);
  if (point && comma) {
    if (isCanonical) return;
    refuseAmounts(rules, conflictText("amounts", point.first() + " has a decimal point",
                                      comma.first() + " a decimal comma", decimalOption));
    return;
  }
  // A comma cannot be in front of thousands and of decimals.
  if (comma && groupedByComma) {
    if (isCanonical) return;
    refuseAmounts(
        rules, "amounts have a decimal comma, such as " + comma.first() +
                   ", or one that may be in front of thousands, such as " + groupedByComma.first() +
                   ": say which sign is in front of decimals with " + std::string(decimalOption));
    return;
  }
  if (!point && !comma && either && !isCanonical) {
    refuseAmounts(rules, "amounts may have decimals or thousands, such as " + either.first() +
                             ": say which sign is in front of decimals with " +
                             std::string(decimalOption));
    return;
  }
  rules.decimalIsSure = comma || point;
  rules.decimal = comma ? ',' : '.';
  if (comma || (point && (groupedByComma || !isCanonical))) {
    assume(rules, "decimal sign", comma ? "comma" : "point", (comma ? comma : point).first(),
           decimalOption);
  } else if (either && !point) {
    assume(rules, "decimal sign", "point",
           "amounts such as " + either.first() +
               " do not tell, and the screens take the point, and leave commas out",
           decimalOption);
  }
}

// Amounts of several currencies look alike without them.
void ValueSurvey::tellForms(ValueRules& rules) const {
  rules.leavesCurrencies = static_cast<bool>(otherCurrencies_);
  if (otherCurrencies_) rules.otherCurrency = otherCurrencies_.first();
  for (std::size_t form = 0; form < forms_.size(); ++form) {
    const ClueTally& tally = forms_[form];
    const bool isLeft =
        rules.leavesCurrencies && static_cast<AmountForm>(form) == AmountForm::Currency;
    if (!tally || isLeft) continue;
    rules.changeValues = true;
    assume(rules, std::string(formTexts[form].what), std::string(formTexts[form].value),
           counted(tally.count, "amount", "amounts") + ", the first " + tally.first(), "");
  }
}

std::optional<std::string> canonicalDateCell(std::string_view text, const ValueRules& rules,
                                             bool& fits) {
  if (!rules.dateOrder || text.empty()) return std::nullopt;
  const DateText date = readDateText(text);
  // By a year that comes first the screens may read no date where there is one.
  if (date.clue == DateClue::None && rules.dateOrder != DateOrder::YearMonthDay)
    return std::nullopt;
  // What the screens read well stays.
  const bool isRead = date.clue == DateClue::AnyOrder || rules.dateOrder == DateOrder::DayMonthYear;
  if (isRead && !date.isUnread && rules.dateOrder != DateOrder::YearMonthDay) {
    fits = date.clue != DateClue::MonthFirst;
    return std::nullopt;
  }
  auto canonical = canonicalDate(text, date, *rules.dateOrder);
  fits = canonical.has_value() || date.clue == DateClue::None;
  return canonical;
}

std::optional<std::string> canonicalAmountCell(std::string_view text, const ValueRules& rules,
                                               bool& fits) {
  if (!rules.decimal || text.empty()) return std::nullopt;
  if (rules.decimal == '.') {
    const auto plain = plainAmountSign(text);
    const bool isUsual = plain && text.find(',') == std::string_view::npos;
    if (isUsual) return std::nullopt;
  }
  if (auto plain = canonicalPlainAmount(text, *rules.decimal)) return plain;
  const std::optional<AmountText> amount = readAmount(text);
  if (!amount || (rules.leavesCurrencies && !amount->currency.empty())) return std::nullopt;
  auto canonical = canonicalAmount(*amount, *rules.decimal);
  fits = canonical.has_value();
  return canonical;
}

}  // namespace velk
