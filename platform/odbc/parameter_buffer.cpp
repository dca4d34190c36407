#include "platform/odbc/parameter_buffer.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {
namespace {

constexpr std::int64_t millisecondsPerDay = 86'400'000;

[[noreturn]] void refuse() {
  throw RuntimeError(ErrorNumber::WrongArgumentType);
}

DataType knownType(std::int32_t type) {
  switch (static_cast<DataType>(type)) {
    case DataType::Integer:
    case DataType::Double:
    case DataType::Date:
    case DataType::VarChar:
      return static_cast<DataType>(type);
  }
  refuse();
}

int currentYear() {
  using namespace std::chrono;
  const year_month_day today(floor<days>(system_clock::now()));
  return static_cast<int>(today.year());
}

double toDouble(const Value& value) {
  if (const auto* integer = std::get_if<std::int32_t>(&value)) return *integer;
  if (const auto* date = std::get_if<Date>(&value)) return date->days;
  const auto number = parseNumber(std::get<std::string>(value));
  if (!number) refuse();
  return *number;
}

// A value of the wrong kind has one number here, whatever the conversion calls it.
template <class Convert>
auto convertedOrRefused(Convert convert) {
  try {
    return convert();
  } catch (const RuntimeError&) {
    refuse();
  }
}

}  // namespace

ParameterBuffer::ParameterBuffer(const CommandParameter& parameter)
    : type_(knownType(parameter.type)) {
  if (type_ == DataType::VarChar) text_.resize(parameter.size);
}

bool ParameterBuffer::fits(const CommandParameter& parameter) const {
  return static_cast<std::int32_t>(type_) == parameter.type &&
         (type_ != DataType::VarChar || text_.size() == parameter.size);
}

SQLRETURN ParameterBuffer::bind(SQLHANDLE statement, SQLUSMALLINT position) {
  const auto as = [&](SQLSMALLINT cType, SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits,
                      SQLPOINTER memory, SQLLEN bytes) {
    return SQLBindParameter(statement, position, SQL_PARAM_INPUT, cType, sqlType, size, digits,
                            memory, bytes, &indicator_);
  };
  switch (type_) {
    case DataType::Integer:
      return as(SQL_C_SLONG, SQL_INTEGER, 0, 0, &integer_, 0);
    case DataType::Double:
      return as(SQL_C_DOUBLE, SQL_DOUBLE, 0, 0, &number_, 0);
    case DataType::Date:
      // The size and digits of SQL Server's datetime.
      return as(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3, &timestamp_, 0);
    default:
      return as(SQL_C_WCHAR, SQL_WVARCHAR, text_.size(), 0, text_.data(),
                static_cast<SQLLEN>(text_.size() * sizeof(char16_t)));
  }
}

void ParameterBuffer::set(const Value& value) {
  if (isNull(value)) {
    indicator_ = SQL_NULL_DATA;
    return;
  }
  switch (type_) {
    case DataType::Integer:
      return setInteger(value);
    case DataType::Double:
      return setNumber(value);
    case DataType::Date:
      return setDate(value);
    case DataType::VarChar:
      if (const auto* text = std::get_if<std::string>(&value)) return setText(*text);
      return setText(toText(value));
  }
}

void ParameterBuffer::setInteger(const Value& value) {
  integer_ = convertedOrRefused([&] { return toInt32(value); });
  indicator_ = sizeof integer_;
}

void ParameterBuffer::setNumber(const Value& value) {
  const auto* number = std::get_if<double>(&value);
  number_ = number != nullptr ? *number : toDouble(value);
  indicator_ = sizeof number_;
}

void ParameterBuffer::setDate(const Value& value) {
  if (const auto* date = std::get_if<Date>(&value)) return setDays(date->days);
  setDays(convertedOrRefused([&] { return toDate(value, currentYear()).days; }));
}

void ParameterBuffer::setText(std::string_view text) {
  const std::u16string wide = toUtf16(text);
  if (wide.size() > text_.size()) refuse();
  std::ranges::copy(wide, text_.begin());
  indicator_ = static_cast<SQLLEN>(wide.size() * sizeof(char16_t));
}

// Before day 0 the time of day counts forward all the same: -1.25 is six o'clock of day -1.
void ParameterBuffer::setDays(double days) {
  // The hours of the first day reach down to the number before it. Not a number is refused, too.
  if (!isInCalendar(days)) refuse();
  double day = std::trunc(days);
  const double fraction = std::abs(days - day);
  auto milliseconds = static_cast<std::int64_t>(std::llround(fraction * millisecondsPerDay));
  // A fraction just below a day rounds up to the next one.
  if (milliseconds == millisecondsPerDay) {
    milliseconds = 0;
    day += 1;
  }
  const CivilDate civil = civilFromDate(Date{day});
  timestamp_.year = static_cast<SQLSMALLINT>(civil.year);
  timestamp_.month = static_cast<SQLUSMALLINT>(civil.month);
  timestamp_.day = static_cast<SQLUSMALLINT>(civil.day);
  timestamp_.hour = static_cast<SQLUSMALLINT>(milliseconds / 3'600'000);
  timestamp_.minute = static_cast<SQLUSMALLINT>(milliseconds / 60'000 % 60);
  timestamp_.second = static_cast<SQLUSMALLINT>(milliseconds / 1000 % 60);
  timestamp_.fraction = static_cast<SQLUINTEGER>(milliseconds % 1000 * 1'000'000);
  indicator_ = sizeof timestamp_;
}

}  // namespace velk
