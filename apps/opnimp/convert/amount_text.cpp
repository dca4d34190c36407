#include "apps/opnimp/convert/amount_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "base/text.h"

namespace velk {

namespace {

using Text = std::string_view;

constexpr char gap = ' ';

struct Spelling {
  Text found;
  Text meant;
};
// What takes the place of a sign of the keyboard where texts are set.
constexpr std::array<Spelling, 8> spellings{{{"\xC2\xA0", " "},
                                             {"\xE2\x80\xAF", " "},
                                             {"\xE2\x80\x89", " "},
                                             {"\t", " "},
                                             {"\xE2\x80\x99", "'"},
                                             {"\xE2\x88\x92", "-"},
                                             {"\xE2\x80\x93", "-"},
                                             {"\xEF\xBC\x8D", "-"}}};

constexpr std::array<Spelling, 18> currencies{{{"$", "$"},
                                               {"\xE2\x82\xAC", "eur"},
                                               {"\xC2\xA3", "gbp"},
                                               {"\xC2\xA5", "jpy"},
                                               {"\xE2\x82\xB9", "inr"},
                                               {"\xE2\x82\xA8", "inr"},
                                               {"rs.", "inr"},
                                               {"rs", "inr"},
                                               {"inr", "inr"},
                                               {"usd", "usd"},
                                               {"eur", "eur"},
                                               {"gbp", "gbp"},
                                               {"jpy", "jpy"},
                                               {"chf", "chf"},
                                               {"aed", "aed"},
                                               {"sgd", "sgd"},
                                               {"cad", "cad"},
                                               {"aud", "aud"}}};

std::string usualSpelling(Text text) {
  std::string usual(text);
  if (isAscii(text) && text.find('\t') == Text::npos) return usual;
  for (const auto& [found, meant] : spellings) {
    for (std::size_t at = 0; (at = usual.find(found, at)) != std::string::npos;) {
      usual.replace(at, found.size(), meant);
    }
  }
  return usual;
}

/// Takes what stands around the number away, from outside to inside, each kind of it once.
class AmountParser {
 public:
  explicit AmountParser(Text text) : rest_(trim(text)) {}

  bool parse(AmountText& amount) {
    amount_ = &amount;
    while (!isBare() &&
           (takeParentheses() || takeNoCents() || takeMinus() || takeSide() || takeCurrency())) {
      rest_ = trim(rest_);
    }
    // (5)-, -5 Cr or -5 Dr: nobody knows what that is meant to be.
    amount.isBelowZero = below_ == 1;
    return below_ <= 1 && !(isDebit_ && below_ > 0) && !repeated_ && takeNumber();
  }

 private:
  bool isBare() const { return !rest_.empty() && isDigit(rest_.front()) && isDigit(rest_.back()); }

  bool note(AmountForm form) {
    repeated_ = repeated_ || amount_->has(form);
    amount_->forms |= 1U << static_cast<unsigned>(form);
    return !repeated_;
  }

  bool takeParentheses() {
    if (rest_.size() < 3 || rest_.front() != '(' || rest_.back() != ')') return false;
    rest_ = rest_.substr(1, rest_.size() - 2);
    ++below_;
    return note(AmountForm::Parentheses);
  }

  /// 50,- or 50.--: the mark stays, for it says that it is in front of decimals.
  bool takeNoCents() {
    constexpr std::size_t mostDashes = 2;
    const std::size_t mark = rest_.find_last_not_of('-');
    if (mark == Text::npos || (rest_[mark] != ',' && rest_[mark] != '.')) return false;
    const std::size_t dashes = rest_.size() - mark - 1;
    if (dashes == 0 || dashes > mostDashes) return false;
    rest_.remove_suffix(dashes);
    return note(AmountForm::NoCents);
  }

  /// A minus right before the digits is one that the screens read, too.
  bool takeMinus() {
    if (rest_.size() < 2) return false;
    if (rest_.ends_with('-')) {
      rest_.remove_suffix(1);
    } else if (rest_.starts_with('-')) {
      const bool isUsual = amount_->forms == 0 && (isDigit(rest_[1]) || rest_[1] == '.');
      rest_.remove_prefix(1);
      ++below_;
      return isUsual || note(AmountForm::Minus);
    } else {
      return false;
    }
    ++below_;
    return note(AmountForm::Minus);
  }

  bool takeSide() {
    for (const Text side : {"dr.", "cr.", "dr", "cr"}) {
      if (!takeWord(side)) continue;
      below_ += side.starts_with('c') ? 1 : 0;
      isDebit_ = side.starts_with('d');
      return note(AmountForm::DebitCredit);
    }
    return false;
  }

  bool takeCurrency() {
    for (const auto& [found, name] : currencies) {
      if (!takeWord(found)) continue;
      amount_->currency = name;
      return note(AmountForm::Currency);
    }
    return false;
  }

  /// At either end.
  bool takeWord(Text word) {
    if (rest_.size() <= word.size()) return false;
    if (equalsIgnoringCase(rest_.substr(0, word.size()), word)) {
      rest_.remove_prefix(word.size());
      return true;
    }
    if (!equalsIgnoringCase(rest_.substr(rest_.size() - word.size()), word)) return false;
    rest_.remove_suffix(word.size());
    return true;
  }

  bool takeNumber() {
    if (rest_.starts_with('+')) rest_.remove_prefix(1);
    for (const char c : rest_) {
      const bool isGap = c == gap || c == '\'';
      if (isGap) amount_->forms |= 1U << static_cast<unsigned>(AmountForm::Gaps);
      if (!isGap && !isDigit(c) && c != '.' && c != ',') return false;
      amount_->number += isGap ? gap : c;
    }
    return std::ranges::any_of(rest_, isDigit);
  }

  AmountText* amount_ = nullptr;
  Text rest_;
  int below_ = 0;
  bool isDebit_ = false;
  bool repeated_ = false;  // something stands at both ends, or twice at one
};

/// Digits in groups of thousands, or, where `lakhs`, of hundreds before the last one.
bool isGrouped(Text number, char mark, bool lakhs) {
  std::size_t shortest = 3;
  for (std::size_t at; (at = number.rfind(mark)) != Text::npos;) {
    const std::size_t length = number.size() - at - 1;
    if (length < shortest || length > 3) return false;
    number = number.substr(0, at);
    if (lakhs) shortest = 2;
  }
  return !number.empty() && number.size() <= 3 && std::ranges::all_of(number, isDigit);
}

DecimalSign signOfOne(Text number, char mark) {
  const bool isPoint = mark == '.';
  const std::size_t at = number.find(mark);
  const Text before = number.substr(0, at);
  const bool isGroup = number.size() - at - 1 == 3 && !before.empty() && before.size() <= 3 &&
                       before.front() != '0' && before.find(gap) == Text::npos;
  if (isGroup) return isPoint ? DecimalSign::PointOrGroup : DecimalSign::CommaOrGroup;
  return isPoint ? DecimalSign::Point : DecimalSign::Comma;
}

/// Several of one kind group digits, and the other kind stands behind them.
DecimalSign signOf(Text number) {
  const auto points = std::ranges::count(number, '.');
  const auto commas = std::ranges::count(number, ',');
  if (points == 0 && commas == 0) return DecimalSign::None;
  if (points + commas == 1) return signOfOne(number, points == 1 ? '.' : ',');
  const bool isPoint = points == 0 || (commas > 0 && number.rfind('.') > number.rfind(','));
  return isPoint ? DecimalSign::Point : DecimalSign::Comma;
}

}  // namespace

std::optional<DecimalSign> plainAmountSign(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  std::size_t mark = Text::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isDigit(text[i])) continue;
    if ((text[i] != '.' && text[i] != ',') || mark != Text::npos) return std::nullopt;
    mark = i;
  }
  if (text.empty() || (mark != Text::npos && text.size() == 1)) return std::nullopt;
  return mark == Text::npos ? DecimalSign::None : signOfOne(text, text[mark]);
}

std::optional<std::string> canonicalPlainAmount(std::string_view text, char decimal) {
  constexpr std::size_t longest = 15;  // for which a string needs no memory
  if (text.size() > longest || text.empty() || !isDigit(text.back())) return std::nullopt;
  std::string canonical(text);
  std::size_t marks = 0;
  for (char& c : canonical) {
    if (isDigit(c)) continue;
    if (c != decimal || ++marks > 1) return std::nullopt;
    c = '.';
  }
  return canonical;
}

std::optional<AmountText> readAmount(std::string_view text) {
  // Longer ones are none, and hostile.
  constexpr std::size_t longest = 100;
  if (text.empty() || text.size() > longest) return std::nullopt;
  AmountText amount;
  const std::string usual = usualSpelling(text);
  if (!AmountParser(usual).parse(amount)) return std::nullopt;
  amount.sign = signOf(amount.number);
  // Its groups have to be some.
  if (!canonicalAmount(amount, amount.sign == DecimalSign::Comma ? ',' : '.')) return std::nullopt;
  // A minus that is no hyphen has to be written as one.
  const bool isRespelt = usual.find('-') != std::string::npos && text.find('-') == Text::npos;
  const AmountForm form = isRespelt ? AmountForm::Minus : AmountForm::Gaps;
  if (usual != text) amount.forms |= 1U << static_cast<unsigned>(form);
  return amount;
}

std::optional<std::string> canonicalAmount(const AmountText& amount, char decimal) {
  const char group = decimal == '.' ? ',' : '.';
  const std::size_t end = std::min(amount.number.find(decimal), amount.number.size());
  const Text whole = Text(amount.number).substr(0, end);
  const Text decimals = Text(amount.number).substr(std::min(end + 1, amount.number.size()));
  if (!std::ranges::all_of(decimals, isDigit)) return std::nullopt;
  const bool hasGaps = whole.find(gap) != Text::npos;
  const bool hasGroups = whole.find(group) != Text::npos;
  if (hasGaps && hasGroups) return std::nullopt;
  const char mark = hasGaps ? gap : group;
  if ((hasGaps || hasGroups) && !isGrouped(whole, mark, mark == ',' || mark == gap)) {
    return std::nullopt;
  }
  std::string text = amount.isBelowZero && !amount.isZero() ? "-" : "";
  std::ranges::copy_if(whole, std::back_inserter(text), isDigit);
  if (!decimals.empty()) text.append(".").append(decimals);
  return text;
}

}  // namespace velk
