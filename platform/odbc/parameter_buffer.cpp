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

ParameterBuffer::ParameterBuffer(std::int32_t type) : type_(knownType(type)) {
  if (type_ == DataType::VarChar) text_.reset(new char16_t[maxText]);
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
      return as(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3, &timestamp_, 0);
    default:
      return as(SQL_C_WCHAR, SQL_WVARCHAR, maxText, 0, text_.get(), maxText * sizeof(char16_t));
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
      return setAnyText(value);
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

void ParameterBuffer::setAnyText(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return setText(*text);
  setText(toText(value));
}

void ParameterBuffer::setText(std::string_view text) {
  if (widenAscii(text)) return;
  const std::u16string wide = toUtf16(text);
  if (wide.size() > maxText) refuse();
  std::copy(wide.begin(), wide.end(), text_.get());
  indicator_ = static_cast<SQLLEN>(wide.size() * sizeof(char16_t));
}

/// False, with nothing said about the text, when it is long or has other characters.
bool ParameterBuffer::widenAscii(std::string_view text) {
  if (text.size() > maxText) return false;
  char16_t* to = text_.get();
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
    *to++ = static_cast<char16_t>(c);
  }
  indicator_ = static_cast<SQLLEN>(text.size() * sizeof(char16_t));
  return true;
}

// The fraction of a date before day 0 counts forward all the same: -1.25 is six o'clock of day -1.
void ParameterBuffer::setDays(double days) {
  if (!isInCalendar(days)) refuse();
  double day = std::trunc(days);
  const double fraction = std::abs(days - day);
  auto milliseconds = static_cast<std::int64_t>(std::llround(fraction * millisecondsPerDay));
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
