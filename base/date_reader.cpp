#include "base/date_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "base/text.h"

namespace velk {

namespace {

struct Number {
  int value = 0;
  int digits = 0;
};

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// The one-based position of a name, in full or by its first three letters; 0 when it is none.
template <std::size_t Count>
int findName(const std::array<std::string_view, Count>& names, std::string_view word) {
  const auto* const found = std::ranges::find_if(names, [&](std::string_view name) {
    return equalsIgnoringCase(word.size() == 3 ? name.substr(0, 3) : name, word);
  });
  return found == names.end() ? 0 : static_cast<int>(found - names.begin()) + 1;
}

/// Takes a text apart into the numbers and names of a date and the time of day.
class DateTextParser {
 public:
  explicit DateTextParser(std::string_view text) : rest_(text) {}

  /// False when the text has anything that no date text has.
  bool parse() {
    skipBlanks();
    while (!rest_.empty()) {
      if (complete_ || !(isDigit(rest_[0]) ? readNumber() : readName())) return false;
      skipSeparator();
    }
    // Two numbers with a point or a comma between them are a decimal number, not day and month.
    const bool decimal = count_ == 2 && month_ == 0 && (mark_ == '.' || mark_ == ',');
    // A separator at the end announces a part that is missing.
    return separator_ == 0 && !decimal;
  }

  const Number& number(std::size_t i) const { return numbers_[i]; }
  std::size_t count() const { return count_; }
  int month() const { return month_; }  ///< by its name; else 0
  double timeOfDay() const { return timeOfDay_; }

 private:
  bool hasDatePart() const { return count_ != 0 || month_ != 0 || weekDay_; }
  /// Only blanks and a comma may separate date and time.
  bool mayMeetTime() const { return separator_ == 0 || separator_ == ','; }
  bool clashesWithTime() const { return hasTime_ && !hasDatePart() && !mayMeetTime(); }

  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

  bool take(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void skipSeparator() {
    separator_ = 0;
    skipBlanks();
    if (rest_.empty() || std::string_view("/-.,").find(rest_[0]) == std::string_view::npos) return;
    separator_ = rest_[0];
    rest_.remove_prefix(1);
    skipBlanks();
  }

  /// The value of a run that is too long for an int is 0; no place takes so many digits.
  Number takeDigits() {
    Number number;
    const auto* const end = std::ranges::find_if_not(rest_, isDigit);
    number.digits = static_cast<int>(end - rest_.begin());
    std::from_chars(rest_.begin(), end, number.value);
    rest_ = {end, rest_.end()};
    return number;
  }

  std::string_view peekWord() const {
    return {rest_.begin(), std::ranges::find_if_not(rest_, isLetter)};
  }

  /// The "am" or "pm" that comes next, after blanks.
  std::string_view peekHalfOfDay() {
    skipBlanks();
    const std::string_view word = peekWord();
    const bool isHalf = equalsIgnoringCase(word, "am") || equalsIgnoringCase(word, "pm");
    return isHalf ? word : std::string_view();
  }

  bool readNumber() {
    constexpr int longestYear = 4;
    const Number number = takeDigits();
    // A longer run is no part of a date: 20080331 is a number.
    if (number.digits > longestYear) return false;
    skipBlanks();
    // Only what follows tells an hour from a day: "10:30" and "10 pm" are times.
    if (take(':')) return readTime(number, true);
    return peekHalfOfDay().empty() ? addNumber(number) : readTime(number, false);
  }

  bool readName() {
    const std::string_view word = peekWord();
    if (word.size() < 3 || clashesWithTime()) return false;
    rest_.remove_prefix(word.size());
    // A second month name falls through and is refused, because no week day has its name.
    if (const int month = findName(monthNames, word); month != 0 && month_ == 0) {
      month_ = month;
      return true;
    }
    if (weekDay_ || findName(weekDayNames, word) == 0) return false;
    weekDay_ = true;
    return true;
  }

  bool addNumber(Number number) {
    if (count_ == numbers_.size() || clashesWithTime()) return false;
    // 1,23,456 is an amount with its digits in groups, not a day of the year 456.
    if (number.digits == 3 && separator_ == ',') return false;
    // skipSeparator() forgets it before parse() asks what separated the two numbers.
    mark_ = separator_;
    numbers_[count_++] = number;
    return true;
  }

  bool readTime(Number hour, bool hasMinutes) {
    if (hasTime_ || !mayMeetTime() || hour.digits > 2 || hour.value > 23) return false;
    double seconds = 0;
    if (hasMinutes && !readMinutes(seconds)) return false;
    const std::string_view half = peekHalfOfDay();
    rest_.remove_prefix(half.size());
    // 13:55 pm is taken as 13:55, as the automation runtime takes it.
    const bool isPm = equalsIgnoringCase(half, "pm");
    if (isPm && hour.value < 12) hour.value += 12;
    // 12 am is midnight; 12 pm is noon, which the line above leaves alone.
    if (!isPm && !half.empty() && hour.value == 12) hour.value = 0;
    timeOfDay_ = (hour.value * 3600 + seconds) / secondsPerDay;
    hasTime_ = true;
    // After a time that comes first, the date is still missing.
    complete_ = hasDatePart();
    return true;
  }

  bool readMinutes(double& seconds) {
    if (!readUnit(seconds, 60)) return false;
    skipBlanks();
    return !take(':') || (readUnit(seconds, 1) && readFraction(seconds));
  }

  bool readUnit(double& seconds, int scale) {
    skipBlanks();
    const Number number = takeDigits();
    if (number.digits < 1 || number.digits > 2 || number.value > 59) return false;
    seconds += number.value * scale;
    return true;
  }

  bool readFraction(double& seconds) {
    constexpr int maxDigits = 9;  // as many as fit an int
    if (!take('.')) return true;
    const Number fraction = takeDigits();
    seconds += fraction.value / std::pow(10.0, fraction.digits);
    return fraction.digits >= 1 && fraction.digits <= maxDigits;
  }

  std::string_view rest_;
  std::array<Number, 3> numbers_;
  std::size_t count_ = 0;
  int month_ = 0;
  bool weekDay_ = false;
  bool hasTime_ = false;
  bool complete_ = false;  // a time after the date ends the text
  char separator_ = 0;     // the mark since the last item
  char mark_ = 0;          // the mark before the last number
  double timeOfDay_ = 0;
};

/// What each number means: D, M, Y, or C, a year with its century. A year that comes first, or
/// without a day, has to be one: else a mistyped 31/02/08 would be the 8th of February 1931.
struct Layout {
  std::string_view slots;
  DateOrder order;
  bool namedMonth = false;
};

// Those of as many numbers in the order tried. A missing day is the first.
constexpr Layout layouts[] = {
    {"DMY", DateOrder::DayMonthYear},      {"MDY", DateOrder::MonthDayYear},
    {"CMD", DateOrder::YearMonthDay},      {"DM", DateOrder::DayMonthYear},
    {"MD", DateOrder::MonthDayYear},       {"MC", DateOrder::DayMonthYear},
    {"CM", DateOrder::YearMonthDay},       {"DY", DateOrder::DayMonthYear, true},
    {"CD", DateOrder::YearMonthDay, true}, {"D", DateOrder::DayMonthYear, true},
    {"C", DateOrder::DayMonthYear, true}};

int fullYear(Number number) {
  if (number.digits > 2) return number.value;
  // The automation runtime's own window: 1930 to 2029.
  return number.value + (number.value < 30 ? 2000 : 1900);
}

/// No real day (isCivil refuses 0) where a number is too long for its place.
CivilDate arrange(const DateTextParser& parts, std::string_view slots, int currentYear) {
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
  // By the beginning only, because day and month can also be exchanged where the year is missing.
  const bool ambiguous = layout.slots.starts_with("DM") && civil.day != civil.month &&
                         isCivil({civil.year, civil.day, civil.month});
  return {dateFromCivil(civil, timeOfDay),
          layout.order,
          ambiguous,
          layout.slots.find_first_of("YC") != std::string_view::npos,
          layout.slots.find('D') != std::string_view::npos,
          layout.namedMonth};
}

}  // namespace

std::optional<DateReading> readDate(std::string_view text, int currentYear) {
  DateTextParser parts(text);
  if (!parts.parse()) return std::nullopt;
  for (const Layout& layout : layouts) {
    const bool named = parts.month() != 0;
    if (layout.namedMonth != named || layout.slots.size() != parts.count()) continue;
    const CivilDate civil = arrange(parts, layout.slots, currentYear);
    if (isCivil(civil)) return makeReading(civil, layout, parts.timeOfDay());
  }
  return std::nullopt;
}

}  // namespace velk
