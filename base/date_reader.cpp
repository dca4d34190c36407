#include <array>
#include <cstddef>

#include "base/dates.h"
#include "base/text.h"

namespace velk {

namespace {

constexpr std::array<std::string_view, 12> monthNames{
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr std::array<std::string_view, 7> weekDayNames{
    "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};

constexpr int maxDigits = 4;
constexpr int maxFractionDigits = 9;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isMark(char c) {
  return c == '/' || c == '-' || c == '.' || c == ',';
}

/// The one-based position of a name, in full or by its first three letters; 0 when it is not there.
template <std::size_t Count>
int findName(const std::array<std::string_view, Count>& names, std::string_view word) {
  for (std::size_t i = 0; i < Count; ++i) {
    const std::string_view name = word.size() == 3 ? names[i].substr(0, 3) : names[i];
    if (equalsIgnoringCase(name, word)) return static_cast<int>(i) + 1;
  }
  return 0;
}

struct Number {
  int value = 0;
  int digits = 0;
};

/// Takes a text apart into the numbers and names of a date and the time of day.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

  /// False when the text has anything that no date text has.
  bool scan();

  const Number& number(std::size_t i) const { return numbers_[i]; }
  std::size_t count() const { return count_; }
  int month() const { return month_; }
  double timeOfDay() const { return timeOfDay_; }

  /// Two numbers with a point or a comma between them are a decimal number, not day and month.
  bool isDecimal() const { return count_ == 2 && month_ == 0 && (mark_ == '.' || mark_ == ','); }

 private:
  bool atDigit() const { return at_ != end_ && isDigit(*at_); }
  bool hasDatePart() const { return count_ != 0 || month_ != 0 || weekDay_; }
  /// Only blanks and a comma stand between date and time.
  bool mayMeetTime() const { return pending_ == 0 || pending_ == ','; }

  void skipBlanks();
  void skipSeparator();
  bool take(char c);
  Number takeDigits();
  std::string_view peekWord() const;

  bool readItem();
  bool readNumber();
  bool readName();
  bool addNumber(Number number);
  bool readTime(Number hour, bool colon, std::string_view halfOfDay);
  bool readMinutes(double& seconds);
  bool readUnit(double& seconds, int scale);
  bool readFraction(double& seconds);
  std::string_view peekHalfOfDay();

  const char* at_;
  const char* end_;
  std::array<Number, 3> numbers_;
  std::size_t count_ = 0;
  int month_ = 0;
  bool weekDay_ = false;
  bool hasTime_ = false;
  bool complete_ = false;  // a time behind the date ends the text
  char pending_ = 0;       // the mark since the last item
  char mark_ = 0;          // the mark in front of the last number
  double timeOfDay_ = 0;
};

bool Scanner::scan() {
  skipBlanks();
  while (at_ != end_) {
    if (!readItem()) return false;
    skipSeparator();
  }
  return pending_ == 0;
}

void Scanner::skipBlanks() {
  while (at_ != end_ && *at_ == ' ') ++at_;
}

void Scanner::skipSeparator() {
  pending_ = 0;
  skipBlanks();
  if (at_ == end_ || !isMark(*at_)) return;
  pending_ = *at_++;
  skipBlanks();
}

bool Scanner::take(char c) {
  if (at_ == end_ || *at_ != c) return false;
  ++at_;
  return true;
}

/// Stops one digit beyond the longest that is of use, so that a long run is refused at once.
Number Scanner::takeDigits() {
  Number number;
  for (; atDigit() && number.digits <= maxDigits; ++number.digits) {
    number.value = number.value * 10 + (*at_++ - '0');
  }
  return number;
}

std::string_view Scanner::peekWord() const {
  const char* end = at_;
  while (end != end_ && isLetter(*end)) ++end;
  return {at_, static_cast<std::size_t>(end - at_)};
}

bool Scanner::readItem() {
  if (complete_) return false;
  if (isDigit(*at_)) return readNumber();
  return readName();
}

bool Scanner::readNumber() {
  const Number number = takeDigits();
  if (number.digits > maxDigits) return false;
  skipBlanks();
  const bool colon = take(':');
  const std::string_view halfOfDay = colon ? std::string_view() : peekHalfOfDay();
  if (colon || !halfOfDay.empty()) return readTime(number, colon, halfOfDay);
  return addNumber(number);
}

bool Scanner::readName() {
  const std::string_view word = peekWord();
  if (word.size() < 3 || (hasTime_ && !hasDatePart() && !mayMeetTime())) return false;
  at_ += word.size();
  if (const int month = findName(monthNames, word); month != 0 && month_ == 0) {
    month_ = month;
    return true;
  }
  if (weekDay_ || findName(weekDayNames, word) == 0) return false;
  weekDay_ = true;
  return true;
}

bool Scanner::addNumber(Number number) {
  if (count_ == numbers_.size()) return false;
  if (hasTime_ && !hasDatePart() && !mayMeetTime()) return false;
  // 1,23,456 is an amount with its digits in groups, not a day of the year 456.
  if (number.digits == 3 && pending_ == ',') return false;
  mark_ = pending_;
  numbers_[count_++] = number;
  return true;
}

bool Scanner::readTime(Number hour, bool colon, std::string_view halfOfDay) {
  if (hasTime_ || !mayMeetTime() || hour.digits > 2 || hour.value > 23) return false;
  double seconds = 0;
  if (colon) {
    if (!readMinutes(seconds)) return false;
    halfOfDay = peekHalfOfDay();
  }
  at_ += halfOfDay.size();
  // 13:55 pm is taken as 13:55, as the automation runtime takes it.
  const bool isPm = !halfOfDay.empty() && (halfOfDay[0] == 'p' || halfOfDay[0] == 'P');
  if (isPm && hour.value < 12) hour.value += 12;
  if (!isPm && !halfOfDay.empty() && hour.value == 12) hour.value = 0;
  timeOfDay_ = (hour.value * 3600 + seconds) / 86400;
  hasTime_ = true;
  complete_ = hasDatePart();
  return true;
}

bool Scanner::readMinutes(double& seconds) {
  if (!readUnit(seconds, 60)) return false;
  skipBlanks();
  if (!take(':')) return true;
  return readUnit(seconds, 1) && readFraction(seconds);
}

bool Scanner::readUnit(double& seconds, int scale) {
  skipBlanks();
  const Number number = takeDigits();
  if (number.digits == 0 || number.digits > 2 || number.value > 59) return false;
  seconds += number.value * scale;
  return true;
}

bool Scanner::readFraction(double& seconds) {
  if (!take('.')) return true;
  double unit = 1;
  int digits = 0;
  for (; atDigit() && digits <= maxFractionDigits; ++digits) {
    unit /= 10;
    seconds += (*at_++ - '0') * unit;
  }
  return digits > 0 && digits <= maxFractionDigits;
}

/// The "am" or "pm" that comes next, behind blanks.
std::string_view Scanner::peekHalfOfDay() {
  skipBlanks();
  const std::string_view word = peekWord();
  return equalsIgnoringCase(word, "am") || equalsIgnoringCase(word, "pm") ? word
                                                                          : std::string_view();
}

/// What each number stands for: D, M, Y, or C, a year with its century. A year in front, or without
/// a day, has to be one: else a mistyped 31/02/08 would be the 8th of February 1931.
struct Layout {
  std::string_view slots;
  DateOrder order;
};

// In the order tried. Where there is no day it is the first.
constexpr std::array<Layout, 3> threeNumbers{{{"DMY", DateOrder::DayMonthYear},
                                              {"MDY", DateOrder::MonthDayYear},
                                              {"CMD", DateOrder::YearMonthDay}}};
constexpr std::array<Layout, 4> twoNumbers{{{"DM", DateOrder::DayMonthYear},
                                            {"MD", DateOrder::MonthDayYear},
                                            {"MC", DateOrder::DayMonthYear},
                                            {"CM", DateOrder::YearMonthDay}}};
constexpr std::array<Layout, 2> nameAndTwoNumbers{
    {{"DY", DateOrder::DayMonthYear}, {"CD", DateOrder::YearMonthDay}}};
constexpr std::array<Layout, 2> nameAndOneNumber{
    {{"D", DateOrder::DayMonthYear}, {"C", DateOrder::DayMonthYear}}};

int fullYear(Number number) {
  if (number.digits > 2) return number.value;
  return number.value + (number.value < 30 ? 2000 : 1900);
}

/// No real day (isCivil refuses 0) where a number is too long for its place.
CivilDate arrange(const Scanner& parts, std::string_view slots, int currentYear) {
  CivilDate civil{currentYear, parts.month(), 1};
  for (std::size_t i = 0; i < slots.size(); ++i) {
    const Number number = parts.number(i);
    const int small = number.digits <= 2 ? number.value : 0;
    if (slots[i] == 'C') civil.year = number.digits > 2 ? number.value : 0;
    if (slots[i] == 'Y') civil.year = fullYear(number);
    if (slots[i] == 'M') civil.month = small;
    if (slots[i] == 'D') civil.day = small;
  }
  return civil;
}

DateReading makeReading(const CivilDate& civil, const Layout& layout, double timeOfDay) {
  Date date = dateFromCivil(civil);
  // Before day 0 the fraction counts away from it.
  date.days += date.days < 0 ? -timeOfDay : timeOfDay;
  const bool ambiguous = layout.slots.starts_with("DM") && civil.day != civil.month &&
                         isCivil({civil.year, civil.day, civil.month});
  return {date, layout.order, ambiguous};
}

template <std::size_t Count>
std::optional<DateReading> tryLayouts(const std::array<Layout, Count>& layouts,
                                      const Scanner& parts, int currentYear) {
  for (const Layout& layout : layouts) {
    const CivilDate civil = arrange(parts, layout.slots, currentYear);
    if (isCivil(civil)) return makeReading(civil, layout, parts.timeOfDay());
  }
  return std::nullopt;
}

}  // namespace

std::optional<DateReading> readDate(std::string_view text, int currentYear) {
  Scanner parts(text);
  if (!parts.scan() || parts.isDecimal()) return std::nullopt;
  const bool named = parts.month() != 0;
  if (named && parts.count() == 1) return tryLayouts(nameAndOneNumber, parts, currentYear);
  if (named && parts.count() == 2) return tryLayouts(nameAndTwoNumbers, parts, currentYear);
  if (!named && parts.count() == 2) return tryLayouts(twoNumbers, parts, currentYear);
  if (!named && parts.count() == 3) return tryLayouts(threeNumbers, parts, currentYear);
  return std::nullopt;
}

}  // namespace velk
