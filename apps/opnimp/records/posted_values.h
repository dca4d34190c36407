// What an import posts of the texts of a record of opening balances, for all that ask whether two
// records post the same.
#pragma once

#include <string>
#include <string_view>

#include "base/values.h"

namespace velk {

/// A code or a reference as databases compare them: without letter case (A to Z), and many without
/// the blanks at the end.
std::string comparedText(std::string_view text);

/// The day; the text itself where it is none, since nothing of it is posted. `currentYear`: for
/// dates without a year.
Value postedDay(std::string_view text, int currentYear);

/// The number that the text begins with; the text itself beyond the range of numbers.
Value postedAmount(std::string_view text);

/// The balance goes to the side of its bill, whatever its own sign.
Value postedBalance(const Value& bill, const Value& balance);

}  // namespace velk
