#include "apps/opnimp/records/posted_values.h"

#include <cmath>

#include "base/date_reader.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {

// In capitals, as most codes are written.
std::string comparedText(std::string_view text) {
  return upperAscii(trim(text));
}

Value postedDay(std::string_view text, int currentYear) {
  const auto reading = readDate(text, currentYear);
  return reading ? Value(Date{std::trunc(reading->date.days)}) : Value(std::string(text));
}

Value postedAmount(std::string_view text) {
  Value amount;
  const bool read = trapErrors([&] { amount = leadingNumber(text); }, [](const RuntimeError&) {});
  return read ? amount : Value(std::string(text));
}

Value postedBalance(const Value& bill, const Value& balance) {
  const auto* const ofBill = std::get_if<double>(&bill);
  const auto* const ofBalance = std::get_if<double>(&balance);
  if (ofBill == nullptr || ofBalance == nullptr) return balance;
  return *ofBill > 0 ? std::abs(*ofBalance) : -std::abs(*ofBalance);
}

}  // namespace velk
