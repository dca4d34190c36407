#include "platform/spreadsheet/number_format.h"

#include <algorithm>
#include <cmath>

#include "base/dates.h"
#include "base/decimal.h"
#include "base/text.h"

namespace velk {

namespace {

constexpr std::size_t maxCodeLength = 255;
constexpr double daysTo1904 = 1462;  // from day 0 to 1 January 1904

bool startsWith(std::string_view text, std::string_view lowerStart) {
  return equalsIgnoringCase(text.substr(0, lowerStart.size()), lowerStart);
}

bool contains(std::string_view bytes, char byte) {
  return bytes.find(byte) != std::string_view::npos;
}

/// Length of the first character in bytes.
std::size_t characterLength(std::string_view text) {
  std::size_t length = std::min<std::size_t>(1, text.size());
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80) {
    ++length;
  }
  return length;
}

std::string generalText(double value) {
  return (value < 0 ? "-" : "") + Decimal(value).general();
}

}  // namespace

// Their numbers of days before that 29 February are one too low.
double daysOfSerial(double serial, bool from1904) {
  constexpr int firstAfterLeapError = 60;
  return serial + (from1904 ? daysTo1904 : serial < firstAfterLeapError ? 1 : 0);
}

std::string_view builtInFormat(std::uint16_t number) {
  // Scientific ones and fractions show as general, as everywhere here.
  constexpr std::string_view general = "General";
  constexpr std::string_view first[] = {general,     "0",       "0.00",           "#,##0",
                                        "#,##0.00",  "$#,##0",  "$#,##0",         "$#,##0.00",
                                        "$#,##0.00", "0%",      "0.00%",          general,
                                        general,     general,   "dd/mm/yyyy",     "d-mmm-yy",
                                        "d-mmm",     "mmm-yy",  "h:mm AM/PM",     "h:mm:ss AM/PM",
                                        "h:mm",      "h:mm:ss", "dd/mm/yyyy h:mm"};
  constexpr std::string_view whole = "#,##0_);(#,##0)";
  constexpr std::string_view cents = "#,##0.00_);(#,##0.00)";
  constexpr std::string_view from37[] = {whole, whole, cents,   cents,       whole,    whole,
                                         cents, cents, "mm:ss", "[h]:mm:ss", "mm:ss.0"};
  // Numbers between depend on the country of the program that wrote the file.
  if (number < std::size(first)) return first[number];
  const std::size_t second = number - std::size_t{37};
  return second < std::size(from37) ? from37[second] : general;
}

/// Splits a code into sections and these into tokens, one for each byte that shows.
class NumberFormat::Compiler {
 public:
  Compiler(std::string_view code, std::vector<Section>& sections)
      : code_(code), sections_(sections) {}

  void compile() {
    sections_.emplace_back();
    while (!code_.empty()) readToken();
    for (Section& section : sections_) {
      // Which section a number takes is not for its sign to say then, nor who writes the minus.
      if (conditional_) section.general = true;
      // A slash is a fraction unless the section turns out to be a date.
      const bool fraction = section.slash && !section.date;
      section.general = section.general || fraction || section.tokens.empty();
    }
  }

 private:
  void add(Part part, char byte) { sections_.back().tokens.push_back({part, byte}); }
  void addLiterals(std::string_view bytes) {
    for (const char byte : bytes) add(Part::Literal, byte);
  }
  std::string_view take(std::size_t count) {
    const std::string_view taken = code_.substr(0, count);
    code_.remove_prefix(taken.size());
    return taken;
  }
  /// Up to a mark, which is taken as well.
  std::string_view takeUntil(char mark) {
    const std::string_view taken = code_.substr(0, code_.find(mark));
    take(taken.size() + 1);
    return taken;
  }

  void readToken() {
    for (const std::string_view general : {"general", "e+", "e-"}) {
      if (!startsWith(code_, general)) continue;
      sections_.back().general = true;
      take(general.size());
      return;
    }
    for (const std::string_view halves : {"am/pm", "a/p"}) {
      if (!startsWith(code_, halves)) continue;
      sections_.back().date = true;
      add(Part::AmPm, halves == "a/p" ? '\0' : 'M');
      take(halves.size());
      return;
    }
    readByte(take(1)[0]);
  }

  void readByte(char byte) {
    switch (byte) {
      case ';':
        sections_.emplace_back();
        return;
      case '"':
        return addLiterals(takeUntil('"'));
      case '\\':
        return addLiterals(take(characterLength(code_)));
      case '_':  // a blank as wide as the next character
        add(Part::Literal, ' ');
        [[fallthrough]];
      case '*':  // the next character as often as the column has room
        take(characterLength(code_));
        return;
      case '[':
        return readBracket(takeUntil(']'));
      case '@':
        sections_.back().general = true;
        return;
      default:
        return readOther(byte);
    }
  }

  void readOther(char byte) {
    Part part = Part::Literal;
    if (contains("0#?", byte)) part = Part::Digit;
    if (contains("ymdhs", lowerAscii(byte))) {
      part = Part::Date;
      byte = lowerAscii(byte);
      sections_.back().date = true;
    }
    if (byte == '/') sections_.back().slash = true;
    if (byte == '.') part = Part::Point;
    if (byte == ',') part = Part::Comma;
    if (byte == '%') part = Part::Percent;
    add(part, byte);
  }

  /// A currency with its language, a condition, hours beyond a day, or a colour.
  void readBracket(std::string_view inside) {
    if (inside.empty()) return;
    const char first = lowerAscii(inside[0]);
    // "[$EUR-407]": the language after the dash does not show.
    if (first == '$') return addLiterals(inside.substr(1, inside.find('-') - 1));
    if (contains("<>=", first)) {
      conditional_ = true;
    } else if (inside.find_first_not_of("hHmMsS") == std::string_view::npos) {
      sections_.back().date = true;
      for (std::size_t i = 0; i < inside.size(); ++i) add(Part::Elapsed, first);
    }
  }

  std::string_view code_;
  std::vector<Section>& sections_;
  bool conditional_ = false;
};

/// A number in a section of digits.
class NumberFormat::NumberText {
 public:
  NumberText(const std::vector<Token>& tokens, double value)
      : number_(value),
        begin_(tokens.begin()),
        end_(tokens.end()),
        point_(std::ranges::find(begin_, end_, Part::Point, &Token::part)),
        places_(countDigits(point_, end_)) {}

  /// With a minus if so wanted, unless all digits that show are zeros.
  std::string text(bool negative) {
    scale();
    number_.round(places_);
    return (negative && !number_.isZero() ? "-" : "") + wholePart() + fractionPart();
  }

 private:
  using Place = std::vector<Token>::const_iterator;

  static bool isDigit(const Token& token) { return token.part == Part::Digit; }
  static int countDigits(Place from, Place to) {
    return static_cast<int>(std::count_if(from, to, isDigit));
  }
  // A comma groups only if digits are on both sides; after the last digit it scales.
  bool isGrouped() const {
    const auto comma = std::ranges::find(begin_, point_, Part::Comma, &Token::part);
    return countDigits(begin_, comma) > 0 && countDigits(comma, point_) > 0;
  }

  /// By percent signs, and by commas after the last digit, each of which divides by a thousand.
  void scale() {
    for (auto token = begin_; token != end_; ++token) {
      if (token->part == Part::Percent) number_.scale(2);
      if (token->part != Part::Comma || countDigits(begin_, token) == 0) continue;
      if (countDigits(token, token < point_ ? point_ : end_) == 0) number_.scale(-3);
    }
  }

  /// From right to left: each place takes a digit, the leftmost one all that are left.
  std::string wholePart() {
    digits_ = number_.whole();
    grouped_ = isGrouped();
    int placesLeft = countDigits(begin_, point_);
    if (placesLeft == 0 && point_ != end_) putAllDigits();  // ".00" shows 12.5 as 12.50
    for (auto token = point_; token != begin_;) {
      --token;
      if (token->part == Part::Literal || token->part == Part::Percent) out_ += token->byte;
      if (!isDigit(*token)) continue;
      putDigit(token->byte);
      if (--placesLeft == 0) putAllDigits();
    }
    std::reverse(out_.begin(), out_.end());
    return std::move(out_);
  }

  void putAllDigits() {
    while (!digits_.empty()) putDigit('0');
  }

  void putDigit(char place) {
    const bool real = !digits_.empty();
    if (!real && place == '#') return;
    // A blank instead of the comma where no digit follows it, as for a "?" itself.
    if (grouped_ && put_ > 0 && put_ % 3 == 0) out_ += real || place == '0' ? ',' : ' ';
    ++put_;
    out_ += real ? digits_.back() : place == '0' ? '0' : ' ';
    if (real) digits_.pop_back();
  }

  std::string fractionPart() const {
    const std::string digits = number_.fraction(places_);
    const std::size_t shown = number_.fraction().size();
    std::string text;
    std::size_t next = 0;
    for (auto token = point_; token != end_; ++token) {
      if (!isDigit(*token)) {
        if (token->part != Part::Comma) text += token->byte;
        continue;
      }
      const bool blank = next >= shown && token->byte != '0';
      if (!blank) text += digits[next];
      if (blank && token->byte == '?') text += ' ';
      ++next;
    }
    return text;
  }

  Decimal number_;
  Place begin_;
  Place end_;
  Place point_;
  int places_;
  std::string digits_;  // those not put yet
  std::string out_;
  bool grouped_ = false;
  int put_ = 0;
};

/// A date or time. Fractions of seconds do not show.
class NumberFormat::DateText {
 public:
  static constexpr double limit = lastCalendarDay + 1;

  DateText(const std::vector<Token>& tokens, double value, bool from1904)
      : tokens_(tokens),
        seconds_(std::llround(value * secondsPerDay)),
        twelveHours_(std::ranges::find(tokens, Part::AmPm, &Token::part) != tokens.end()) {
    // From the rounded seconds, so that 23:59:59.9 becomes the next day and not 24:00.
    date_.days = daysOfSerial(std::floor(static_cast<double>(seconds_) / secondsPerDay), from1904);
    civil_ = civilFromDate(date_);
  }

  std::string text() {
    for (auto token = tokens_.begin(); token != tokens_.end();) {
      // The same letter several times is one part.
      const auto end = std::find_if(token + 1, tokens_.end(), [&](const Token& next) {
        return !isTime(next) || next.part != token->part || next.byte != token->byte;
      });
      put(*token, static_cast<std::size_t>(end - token), end);
      token = end;
    }
    return std::move(out_);
  }

 private:
  using Place = std::vector<Token>::const_iterator;

  static bool isTime(const Token& token) {
    return token.part == Part::Date || token.part == Part::Elapsed;
  }

  /// `end` is the place after the token and those that repeat it.
  void put(const Token& token, std::size_t width, Place end) {
    switch (token.part) {
      case Part::Literal:
      case Part::Comma:
      case Part::Percent:
        out_ += token.byte;
        break;
      case Part::AmPm:
        out_ += hour() < 12 ? 'A' : 'P';
        if (token.byte != '\0') out_ += token.byte;
        break;
      case Part::Elapsed:
        putNumber(seconds_ / (token.byte == 'h' ? 3600 : token.byte == 'm' ? 60 : 1), width);
        lastTime_ = token.byte;
        break;
      case Part::Date:
        putDate(token.byte, width, end);
        lastTime_ = token.byte;
        break;
      case Part::Point:  // of a fraction of seconds, or between day and month
        if (end == tokens_.end() || end->part != Part::Digit) out_ += token.byte;
        break;
      case Part::Digit:
        break;
    }
  }

  std::int64_t ofDay() const { return seconds_ % secondsPerDay; }
  std::int64_t hour() const { return ofDay() / 3600; }

  void putNumber(std::int64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    out_.append(width > digits.size() ? width - digits.size() : 0, '0').append(digits);
  }

  /// An m is the minute after an hour and before a second, else the month.
  bool isMinute(Place end) const {
    const auto next = std::find_if(end, tokens_.end(), isTime);
    return lastTime_ == 'h' || (next != tokens_.end() && next->byte == 's');
  }

  void putDate(char letter, std::size_t width, Place end) {
    if (width > 2 && (letter == 'm' || letter == 'd')) {
      putName(letter, width);
    } else if (letter == 'y') {
      putNumber(width > 2 ? civil_.year : civil_.year % 100, width > 2 ? 4 : 2);
    } else {
      putNumber(numberOf(letter, end), std::min<std::size_t>(width, 2));
    }
  }

  std::int64_t numberOf(char letter, Place end) const {
    switch (letter) {
      case 'd':
        return civil_.day;
      case 'h':
        // Midnight and noon are 12, not 0.
        return twelveHours_ ? (hour() + 11) % 12 + 1 : hour();
      case 's':
        return ofDay() % 60;
      default:
        return isMinute(end) ? ofDay() / 60 % 60 : civil_.month;
    }
  }

  /// Three letters, or all of them; five are one of a month.
  void putName(char letter, std::size_t width) {
    const std::string_view name = letter == 'm'
                                      ? monthNames[static_cast<std::size_t>(civil_.month) - 1]
                                      : weekDayNames[static_cast<std::size_t>(date_.days) % 7];
    const bool initial = letter == 'm' && width == 5;
    out_ += name.substr(0, width == 3 ? 3 : initial ? 1 : name.size());
  }

  const std::vector<Token>& tokens_;
  std::int64_t seconds_;
  Date date_;
  CivilDate civil_{};
  bool twelveHours_;
  char lastTime_ = '\0';
  std::string out_;
};

NumberFormat::NumberFormat(std::string_view code) {
  if (code.size() > maxCodeLength) code = builtInFormat(0);
  Compiler(code, sections_).compile();
}

std::string NumberFormat::text(double value, bool from1904) const {
  if (!std::isfinite(value)) return "#NUM!";
  const Section& section = sectionFor(value);
  // What is no date shows as its number.
  const bool badDate = section.date && (value < 0 || value >= DateText::limit);
  if (section.general || badDate) return generalText(value);
  if (section.date) return DateText(section.tokens, value, from1904).text();
  return NumberText(section.tokens, value).text(value < 0 && &section == &sections_.front());
}

const NumberFormat::Section& NumberFormat::sectionFor(double value) const {
  // A second section shows negative numbers without a minus: its code contains the sign.
  const bool ownNegative = value < 0 && sections_.size() > 1;
  const bool ownZero = value == 0 && sections_.size() > 2;
  return sections_[ownNegative ? 1 : ownZero ? 2 : 0];
}

// Before the first day there are times only.
bool NumberFormat::showsDay(double value, bool from1904) const {
  if (!std::isfinite(value) || value < (from1904 ? 0 : 1) || value >= DateText::limit) return false;
  const Section& section = sectionFor(value);
  return !section.general && section.date &&
         std::ranges::any_of(section.tokens, [](const Token& token) {
           return token.part == Part::Date && (token.byte == 'd' || token.byte == 'y');
         });
}

void setNumber(SheetCell& cell, double value, const NumberFormat& format, bool from1904) {
  const bool isDay = format.showsDay(value, from1904);
  cell.kind = isDay ? SheetCell::Kind::Date : SheetCell::Kind::Number;
  cell.value = isDay ? daysOfSerial(value, from1904) : value;
}

}  // namespace velk
