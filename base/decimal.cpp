#include "base/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace velk {

namespace {

constexpr double exactWhole = 9007199254740992;  // 2^53: each whole number below is a double
constexpr int digitsShown = 15;      // as many as a double keeps of every decimal number
constexpr int lastPlainPoint = 21;   // up to twenty-one digits before the point
constexpr int firstPlainPoint = -9;  // up to nine zeros after it

}  // namespace

Decimal::Decimal(double value) {
  const double positive = std::fabs(value);
  // Whole numbers keep all their digits, as an account number must; others 15, so that 0.1 + 0.2
  // is 0.3.
  if (positive == std::trunc(positive) && positive < exactWhole) {
    digits_ = std::to_string(static_cast<std::uint64_t>(positive));
    point_ = static_cast<int>(digits_.size());
  } else {
    // A digit, the point, 14 more digits and an exponent such as e+308 take 21 characters.
    std::array<char, 32> buffer;
    const auto written = std::to_chars(buffer.begin(), buffer.end(), positive,
                                       std::chars_format::scientific, digitsShown - 1);
    const std::string_view text(buffer.data(),
                                static_cast<std::size_t>(written.ptr - buffer.data()));
    const std::size_t mark = text.find('e');
    digits_ = text.substr(0, mark);
    digits_.erase(1, 1);  // the point
    // from_chars knows no plus sign.
    const std::string_view power = text.substr(text[mark + 1] == '+' ? mark + 2 : mark + 1);
    std::from_chars(power.data(), power.data() + power.size(), point_);
    // The exponent counts from after the first digit, point_ from before it.
    ++point_;
  }
  stripZeros();
}

void Decimal::stripZeros() {
  const std::size_t first = std::min(digits_.find_first_not_of('0'), digits_.size());
  digits_.erase(0, first);
  // Zero has no digits; with the point elsewhere general() would write it with an exponent.
  point_ = digits_.empty() ? 0 : point_ - static_cast<int>(first);
  digits_.erase(digits_.find_last_not_of('0') + 1);
}

void Decimal::round(int places) {
  // By the decimal digits, not by the double: 2.675 has to give 2.68, although the double is below.
  const int kept = point_ + places;
  if (kept >= static_cast<int>(digits_.size())) return;
  // A negative count means less than a tenth of the last place: that rounds down.
  const bool up = kept >= 0 && digits_[static_cast<std::size_t>(kept)] >= '5';
  digits_.resize(static_cast<std::size_t>(std::max(kept, 0)));
  if (up) {
    // A leading zero takes the carry of 99.
    digits_.insert(digits_.begin(), '0');
    ++point_;
    auto digit = digits_.end();
    while (*--digit == '9') *digit = '0';
    ++*digit;
  }
  stripZeros();
}

std::string Decimal::whole() const {
  if (point_ <= 0) return {};
  const auto length = static_cast<std::size_t>(point_);
  std::string text = digits_.substr(0, length);
  text.resize(length, '0');
  return text;
}

std::string Decimal::fraction() const {
  if (point_ >= static_cast<int>(digits_.size())) return {};
  if (point_ >= 0) return digits_.substr(static_cast<std::size_t>(point_));
  return std::string(static_cast<std::size_t>(-point_), '0') + digits_;
}

std::string Decimal::fraction(int places) const {
  std::string text = fraction();
  text.resize(static_cast<std::size_t>(places), '0');
  return text;
}

std::string Decimal::general() const {
  if (point_ >= firstPlainPoint && point_ <= lastPlainPoint) {
    const std::string before = whole();
    const std::string after = fraction();
    return (before.empty() ? "0" : before) + (after.empty() ? "" : "." + after);
  }
  const int exponent = point_ - 1;
  std::string text = digits_.substr(0, 1);
  if (digits_.size() > 1) text.append(".").append(digits_, 1);
  const std::string power = std::to_string(std::abs(exponent));
  // Two digits of exponent at least, as spreadsheets show it.
  return text + (exponent < 0 ? "E-" : "E+") + (power.size() < 2 ? "0" : "") + power;
}

}  // namespace velk
