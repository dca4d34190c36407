#include "platform/odbc/cell_reader.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/date_reader.h"
#include "base/numbers.h"
#include "base/text.h"

namespace velk {
namespace {

constexpr std::size_t chunkCharacters = 1024;  // one piece for all but unusually long texts

template <class Number>
std::optional<Number> wholly(std::string_view text) {
  Number number{};
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || rest != text.data() + text.size()) return std::nullopt;
  return number;
}

Value integerCell(const std::string& text, bool big) {
  const auto number = wholly<std::int64_t>(text);
  if (!number) return text;
  // An engine without column types gives large numbers in a column of small ones, too.
  const auto narrow = static_cast<std::int32_t>(*number);
  if (!big && narrow == *number) return narrow;
  return fitsDouble(*number) ? Value(static_cast<double>(*number)) : Value(text);
}

// Some engines drop the zero before the point.
std::string decimalCell(std::string_view text) {
  std::string completed;
  if (text.starts_with('-')) {
    completed += '-';
    text.remove_prefix(1);
  }
  if (text.starts_with('.')) completed += '0';
  completed += text;
  return completed;
}

// Engines write dates year first; in any other order it is somebody's text.
Value dateCell(const std::string& text) {
  const auto reading = readDate(text, 0);
  if (reading && reading->order == DateOrder::YearMonthDay) return reading->date;
  return text;
}

Value bitCell(const std::string& text) {
  if (text == "1") return "True";
  if (text == "0") return "False";
  return text;
}

// Before day 0 the time of day counts forward all the same: -1.25 is six o'clock of day -1.
Date toDate(const SQL_TIMESTAMP_STRUCT& stamp) {
  const double day = dateFromCivil({stamp.year, stamp.month, stamp.day}).days;
  const double seconds =
      stamp.hour * 3600.0 + stamp.minute * 60.0 + stamp.second + stamp.fraction * 1e-9;
  const double time = seconds / secondsPerDay;
  return Date{day < 0 ? day - time : day + time};
}

/// False for a null.
template <class Memory>
bool readFixed(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column, SQLSMALLINT cType,
               Memory& memory) {
  SQLLEN indicator = 0;
  session.check(SQLGetData(statement, column, cType, &memory, sizeof memory, &indicator),
                SQL_HANDLE_STMT, statement);
  return indicator != SQL_NULL_DATA;
}

Value readDate(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column) {
  SQL_TIMESTAMP_STRUCT stamp{};
  if (!readFixed(session, statement, column, SQL_C_TYPE_TIMESTAMP, stamp)) return Null{};
  return toDate(stamp);
}

Value readDouble(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column) {
  double number = 0;
  if (!readFixed(session, statement, column, SQL_C_DOUBLE, number)) return Null{};
  return number;
}

// A long cell comes in pieces, each but the last as long as the memory for it without its final
// NUL.
Value readText(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column, ColumnKind kind) {
  std::array<char16_t, chunkCharacters> chunk;
  std::u16string text;
  for (bool more = true; more;) {
    SQLLEN bytes = 0;
    const SQLRETURN result =
        SQLGetData(statement, column, SQL_C_WCHAR, chunk.data(), sizeof chunk, &bytes);
    if (result == SQL_NO_DATA) break;
    session.check(result, SQL_HANDLE_STMT, statement);
    if (bytes == SQL_NULL_DATA) return Null{};
    more = bytes == SQL_NO_TOTAL || bytes >= static_cast<SQLLEN>(sizeof chunk);
    text.append(chunk.data(),
                more ? chunk.size() - 1 : static_cast<std::size_t>(bytes) / sizeof(char16_t));
  }
  return interpretCell(kind, toUtf8(text));
}

}  // namespace

ColumnKind columnKindOf(SQLSMALLINT sqlType) {
  switch (sqlType) {
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
      return ColumnKind::Integer;
    case SQL_BIGINT:
      return ColumnKind::BigInteger;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return ColumnKind::Double;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return ColumnKind::Decimal;
    case SQL_BIT:
      return ColumnKind::Bit;
    case SQL_DATE:
    case SQL_TIMESTAMP:
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return ColumnKind::Date;
    default:
      return ColumnKind::Text;
  }
}

Value interpretCell(ColumnKind kind, std::string text) {
  switch (kind) {
    case ColumnKind::Integer:
      return integerCell(text, false);
    case ColumnKind::BigInteger:
      return integerCell(text, true);
    case ColumnKind::Double:
      if (const auto number = wholly<double>(text)) return *number;
      return text;
    case ColumnKind::Decimal:
      return decimalCell(text);
    case ColumnKind::Bit:
      return bitCell(text);
    case ColumnKind::Date:
      return dateCell(text);
    case ColumnKind::Text:
      break;
  }
  return text;
}

ColumnKind describeColumn(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column) {
  SQLSMALLINT type = SQL_VARCHAR;
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT digits = 0;
  SQLSMALLINT nullable = 0;
  SQLULEN size = 0;
  session.check(
      SQLDescribeColW(statement, column, nullptr, 0, &nameLength, &type, &size, &digits, &nullable),
      SQL_HANDLE_STMT, statement);
  return columnKindOf(type);
}

Value readCell(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column, ColumnKind kind) {
  if (!session.dialect().hasDynamicTypes) {
    if (kind == ColumnKind::Date) return readDate(session, statement, column);
    if (kind == ColumnKind::Double) return readDouble(session, statement, column);
  }
  return readText(session, statement, column, kind);
}

}  // namespace velk
