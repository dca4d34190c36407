// A number in decimal digits, rounded as spreadsheets do.
#pragma once

#include <string>

namespace velk {

class Decimal {
 public:
  /// The absolute value of a finite number, to 15 significant digits; whole numbers below 2^53 are
  /// exact. So 0.1 + 0.2 is 0.3, and a long account number keeps its last digit.
  explicit Decimal(double value);

  bool isZero() const { return digits_.empty(); }
  /// Moves the point: the number times ten to that power.
  void scale(int power) {
    if (!isZero()) point_ += power;
  }
  /// Rounds to so many places after the point; a half goes away from zero.
  void round(int places);

  /// The digits before the point, without leading zeros; empty for a number below one.
  std::string whole() const;
  /// The digits after the point, `places` of them; without `places` up to the last that is not
  /// zero.
  std::string fraction(int places) const;
  std::string fraction() const;
  /// Digits and, far from one, an exponent: "1234.5", "1.5E+21".
  std::string general() const;

 private:
  void stripZeros();

  // The number is 0.digits times ten to the power of the point. No zeros at the ends.
  std::string digits_;
  int point_ = 0;
};

}  // namespace velk
