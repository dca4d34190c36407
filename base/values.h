// The value of a database field, of a parameter or of a control's property.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "base/dates.h"

namespace velk {

struct Null {
  bool operator==(const Null&) const = default;
};

/// Null, 32-bit integer, double, date or text (UTF-8).
///
/// Copied by way of a text of its own: the library's variant takes it for granted that the copy of
/// a text does not fail, and one for which there is no memory left it in no state at all.
class Value : public std::variant<Null, std::int32_t, double, Date, std::string> {
 public:
  using Held = std::variant<Null, std::int32_t, double, Date, std::string>;
  using Held::Held;
  Value() = default;
  Value(const Value& other) : Held(copyOf(other)) {}
  Value(Value&&) noexcept = default;
  Value& operator=(const Value& other) { return *this = Value(other); }
  Value& operator=(Value&&) noexcept = default;
  ~Value() = default;

 private:
  static Held copyOf(const Held& held) {
    return std::visit([](auto copy) { return Held(std::move(copy)); }, held);
  }
};

inline bool isNull(const Value& value) {
  return std::holds_alternative<Null>(value);
}

/// The value as text: null gives the empty text; a double its shortest decimal form of at most 15
/// significant digits (whole ones without a point; with an exponent, 1E+15 or 1E-05, only from 1e15
/// up and below 1e-4); a date "DD/MM/YYYY", with " HH:MM:SS" when it has a time of day, rounded to
/// the second.
std::string toText(const Value& value);

/// The value as a date: a number counts days, a text is read day first (date_reader.h),
/// `currentYear` filling a missing year. Errors: 94 for null, 13 for a text that is no date, 6 for
/// a number outside the years 100 to 9999.
Date toDate(const Value& value, int currentYear);

/// The value as a number; a date counts as its days. A text has to be a number from end to end
/// (numbers.h). Errors: 94 for null, 13 for a text that is no number, 6 beyond a double's range.
double toDouble(const Value& value);

/// The same as a whole number, halves to even. Error 6 beyond 32 bits.
std::int32_t toInt32(const Value& value);

}  // namespace velk
