// The reader of date texts beside Windows' own, in a day-first locale. docs/dates.md has the
// reasons of the differences; a difference without one fails.
#include <array>
#include <random>
#include <regex>

#include "base/date_reader.h"
#include "tests/windows/server_dll.h"

namespace velk {
namespace {

/// Date texts as users write them, and some that nobody should.
class DateTexts {
 public:
  std::string next() {
    static const std::array patterns{"DsMsYt", "DsMsYt", "DsMsYt", "DsM s Yt", "MsDsYt",
                                     "YsMsDt", "DgNgYt", "NgD, Y", "DsM",      "MsY"};
    const std::string separator = oneOf("/", "/", "-", "-", ".", ",", " ", " / ", "- ");
    std::string text;
    for (const char* part = patterns[pick(patterns.size())]; *part != '\0'; ++part) {
      text += *part == 's' ? separator : piece(*part);
    }
    return text;
  }

 private:
  std::size_t pick(std::size_t count) { return random_() % count; }
  template <class... Choices>
  std::string oneOf(Choices... choices) {
    return std::array<const char*, sizeof...(choices)>{choices...}[pick(sizeof...(choices))];
  }
  std::string number(std::size_t low, std::size_t count) {
    const std::string text = std::to_string(low + pick(count));
    return text.size() == 1 && pick(2) == 0 ? "0" + text : text;
  }
  std::string piece(char part) {
    switch (part) {
      case 'D':
        return number(0, 34);
      case 'M':
        return pick(6) == 0 ? piece('N') : number(0, 15);
      case 'N':
        return oneOf("Jan", "february", "MAR", "Apr", "May", "June", "jul", "August", "Sept", "Sep",
                     "Octob", "NOV", "December");
      case 'Y':
        return pick(6) == 0 ? number(0, 1000) : pick(6) == 0 ? number(0, 100) : number(1890, 200);
      case 'g':
        return oneOf(" ", " ", "-", "/", "");
      case 't':
        return oneOf("", "", "", " 10:30", " 23:59:59", " 9:05 pm", " 24:00", " 12:00 am", " 7 PM");
      default:
        return {part};
    }
  }

  std::mt19937 random_{20080331};
};

std::optional<Date> windowsReading(const std::string& text) {
  constexpr LCID dayFirst = 0x0809;
  DATE date = 0;
  std::wstring wide = toWide(text);
  const HRESULT result = VarDateFromStr(wide.data(), dayFirst, LOCALE_NOUSEROVERRIDE, &date);
  return FAILED(result) ? std::nullopt : std::optional(Date{date});
}

struct Difference {
  std::string text;
  std::optional<Date> ours, theirs;

  bool matches(const std::regex& pattern) const { return std::regex_search(text, pattern); }
  bool onlyTheirs() const { return !ours && theirs; }
  /// A number of at most two digits, at one end of the text, that Windows took for the year.
  bool shortYear(const std::regex& pattern) const {
    static const std::regex time(" [0-9]+(:.*| PM)$");
    std::smatch found;
    const std::string date = std::regex_replace(text, time, "");
    return onlyTheirs() && std::regex_search(date, found, pattern) &&
           std::stoi(found[1]) == civilFromDate(*theirs).year % 100;
  }
};

const std::regex september("sep", std::regex::icase);
const std::regex numberInFront("^0*([0-9]{1,2})");
const std::regex numberAtEnd("[^0-9]0*([0-9]{1,2})$");
const std::regex numberWithComma("^[0-9]+,[0-9]+$|, ?[0-9]{3}(?![0-9])");
const std::regex yearDayMonth("^[0-9]{3,4}[^0-9]+(1[3-9]|2[0-9]|3[01])[^0-9]+[0-9]");

/// Whether docs/dates.md has the reason.
bool isExplained(const Difference& d) {
  if (d.text.find('.') != std::string::npos &&
      (!d.theirs || civilFromDate(*d.theirs).year == 1899)) {
    return true;
  }
  if (d.ours && d.theirs) {  // two-digit years
    return formatDayFirst(*d.ours).substr(0, 5) == formatDayFirst(*d.theirs).substr(0, 5) &&
           civilFromDate(*d.ours).year + 100 == civilFromDate(*d.theirs).year;
  }
  return d.matches(september) || d.shortYear(numberInFront) ||
         (d.shortYear(numberAtEnd) && civilFromDate(*d.theirs).day == 1) ||
         (d.onlyTheirs() && (d.matches(numberWithComma) || d.matches(yearDayMonth)));
}

TEST_CASE("dates are read as Windows reads them, but for what is explained") {
  DateTexts texts;
  SYSTEMTIME now{};
  GetLocalTime(&now);
  int agreed = 0;
  for (int i = 0; i < 100'000; ++i) {
    Difference d{texts.next(), {}, {}};
    if (const auto reading = readDate(d.text, now.wYear)) d.ours = reading->date;
    d.theirs = windowsReading(d.text);
    const auto textOf = [](const std::optional<Date>& date) {
      return date ? formatIso(*date) : "no date";
    };
    if (textOf(d.ours) == textOf(d.theirs)) {
      ++agreed;
      continue;
    }
    if (isExplained(d)) continue;
    FAIL_CHECK(d.text << ": " << textOf(d.ours) << ", Windows: " << textOf(d.theirs));
  }
  CHECK(agreed > 80'000);
}

}  // namespace
}  // namespace velk
