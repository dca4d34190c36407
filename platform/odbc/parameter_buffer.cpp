#include "platform/odbc/parameter_buffer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <iterator>

#include "base/errors.h"
#include "base/text.h"

namespace velk {
namespace {

constexpr double millisecondsPerDay = 1000 * secondsPerDay;

[[noreturn]] void refuse() {
  throw RuntimeError(ErrorNumber::WrongArgumentType);
}

int currentYear() {
  using namespace std::chrono;
  const year_month_day today(floor<days>(system_clock::now()));
  return static_cast<int>(today.year());
}

// Before day 0 the time of day counts forward all the same: -1.25 is six o'clock of day -1.
SQL_TIMESTAMP_STRUCT toTimestamp(Date date) {
  using namespace std::chrono;
  // The hours of the first day reach down to the number before it. Not a number is refused, too.
  if (!isInCalendar(date.days)) refuse();
  const double whole = std::trunc(date.days);
  // A time just below a day rounds up to the next one.
  const auto sinceStart =
      days(static_cast<int>(whole)) +
      milliseconds(std::llround(std::abs(date.days - whole) * millisecondsPerDay));
  const auto day = floor<days>(sinceStart);
  const CivilDate civil = civilFromDate(Date{static_cast<double>(day.count())});
  const hh_mm_ss time(sinceStart - day);
  return {static_cast<SQLSMALLINT>(civil.year),
          static_cast<SQLUSMALLINT>(civil.month),
          static_cast<SQLUSMALLINT>(civil.day),
          static_cast<SQLUSMALLINT>(time.hours().count()),
          static_cast<SQLUSMALLINT>(time.minutes().count()),
          static_cast<SQLUSMALLINT>(time.seconds().count()),
          static_cast<SQLUINTEGER>(nanoseconds(time.subseconds()).count())};
}

}  // namespace

struct ParameterBuffer::Binding {
  DataType type;
  SQLSMALLINT cType;
  SQLSMALLINT sqlType;
  SQLULEN size;  // 0: the parameter's
  SQLSMALLINT digits;
};

const ParameterBuffer::Binding& ParameterBuffer::bindingOf(std::int32_t type) {
  static constexpr Binding bindings[] = {
      // Decimal digits: of the largest integer, and as many as a double keeps.
      {DataType::Integer, SQL_C_SLONG, SQL_INTEGER, 10, 0},
      {DataType::Double, SQL_C_DOUBLE, SQL_DOUBLE, 15, 0},
      // The size and digits of SQL Server's datetime.
      {DataType::Date, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3},
      {DataType::VarChar, SQL_C_WCHAR, SQL_WVARCHAR, 0, 0},
  };
  const auto* const found =
      std::ranges::find(bindings, static_cast<DataType>(type), &Binding::type);
  if (found == std::end(bindings)) refuse();
  return *found;
}

ParameterBuffer::ParameterBuffer(const CommandParameter& parameter)
    : binding_(bindingOf(parameter.type)), memory_(parameter.size) {}

bool ParameterBuffer::fits(const CommandParameter& parameter) const {
  return static_cast<std::int32_t>(binding_.type) == parameter.type &&
         memory_.size() == parameter.size;
}

SQLRETURN ParameterBuffer::bind(SQLHANDLE statement, SQLUSMALLINT position) {
  return SQLBindParameter(statement, position, SQL_PARAM_INPUT, binding_.cType, binding_.sqlType,
                          binding_.size == 0 ? memory_.size() : binding_.size, binding_.digits,
                          memory_.data(), static_cast<SQLLEN>(memory_.size() * sizeof(char16_t)),
                          &indicator_);
}

void ParameterBuffer::set(const Value& value) {
  if (isNull(value)) {
    indicator_ = SQL_NULL_DATA;
    return;
  }
  try {
    switch (binding_.type) {
      case DataType::Integer:
        return put(SQLINTEGER{toInt32(value)});
      case DataType::Double:
        return put(toDouble(value));
      case DataType::Date:
        if (const auto* date = std::get_if<Date>(&value)) return put(toTimestamp(*date));
        return put(toTimestamp(toDate(value, currentYear())));
      case DataType::VarChar:
        if (const auto* text = std::get_if<std::string>(&value)) return putText(*text);
        return putText(toText(value));
    }
  } catch (const RuntimeError&) {
    // A value of the wrong kind has one number here, whatever the conversion calls it.
    refuse();
  }
}

template <class Fixed>
void ParameterBuffer::put(const Fixed& value) {
  // Copied, because the memory is of UTF-16 units and may not be used as another type.
  std::memcpy(memory_.data(), &value, sizeof value);
  indicator_ = sizeof value;
}

void ParameterBuffer::putText(std::string_view text) {
  const std::u16string wide = toUtf16(text);
  // Never cut: a shortened code may be another customer's.
  if (wide.size() > memory_.size()) refuse();
  std::ranges::copy(wide, memory_.begin());
  indicator_ = static_cast<SQLLEN>(wide.size() * sizeof(char16_t));
}

}  // namespace velk
