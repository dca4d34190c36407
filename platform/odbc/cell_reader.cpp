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

constexpr std::size_t chunkCharacters = 1024;

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

std::string asUtf8(std::string_view text) {
  return std::string(text);
}
std::string asUtf8(std::u16string_view text) {
  return toUtf8(text);
}

// A long cell comes in pieces: success with information means that more is to come.
template <class Character>
Value readText(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column, CellKind kind) {
  constexpr SQLSMALLINT cType = sizeof(Character) == 1 ? SQL_C_CHAR : SQL_C_WCHAR;
  std::array<Character, chunkCharacters> chunk;
  std::basic_string<Character> longText;
  for (;;) {
    SQLLEN bytes = 0;
    const SQLRETURN result =
        SQLGetData(statement, column, cType, chunk.data(), sizeof chunk, &bytes);
    if (result == SQL_NO_DATA) break;
    session.check(result, SQL_HANDLE_STMT, statement);
    if (bytes == SQL_NULL_DATA) return Null{};
    const bool whole = bytes != SQL_NO_TOTAL && bytes < static_cast<SQLLEN>(sizeof chunk);
    const std::size_t got =
        whole ? static_cast<std::size_t>(bytes) / sizeof(Character) : chunk.size() - 1;
    const std::basic_string_view<Character> piece(chunk.data(), got);
    if (whole && longText.empty()) return interpretCell(kind, asUtf8(piece));
    longText += piece;
    if (whole) break;
  }
  return interpretCell(kind, asUtf8(longText));
}

}  // namespace

CellKind cellKindOf(SQLSMALLINT sqlType) {
  switch (sqlType) {
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
      return CellKind::Integer;
    case SQL_BIGINT:
      return CellKind::BigInteger;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return CellKind::Double;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return CellKind::Decimal;
    case SQL_BIT:
      return CellKind::Bit;
    case SQL_DATE:
    case SQL_TIMESTAMP:
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return CellKind::Date;
    default:
      return CellKind::Text;
  }
}

Value interpretCell(CellKind kind, std::string text) {
  switch (kind) {
    case CellKind::Integer:
      return integerCell(text, false);
    case CellKind::BigInteger:
      return integerCell(text, true);
    case CellKind::Double:
      if (const auto number = wholly<double>(text)) return *number;
      return text;
    case CellKind::Decimal:
      return decimalCell(text);
    case CellKind::Bit:
      return bitCell(text);
    case CellKind::Date:
      return dateCell(text);
    case CellKind::Text:
      break;
  }
  return text;
}

CellKind describeColumn(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column) {
  SQLSMALLINT type = SQL_VARCHAR;
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT digits = 0;
  SQLSMALLINT nullable = 0;
  SQLULEN size = 0;
  session.check(
      SQLDescribeColW(statement, column, nullptr, 0, &nameLength, &type, &size, &digits, &nullable),
      SQL_HANDLE_STMT, statement);
  return cellKindOf(type);
}

Value readCell(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column, CellKind kind) {
  if (!session.dialect().hasDynamicTypes()) {
    if (kind == CellKind::Date) return readDate(session, statement, column);
    if (kind == CellKind::Double) return readDouble(session, statement, column);
  }
  // Digits are the same in every single-byte character set, and cheaper so.
  const bool isNumber = kind == CellKind::Integer || kind == CellKind::BigInteger ||
                        kind == CellKind::Double || kind == CellKind::Bit;
  return isNumber ? readText<char>(session, statement, column, kind)
                  : readText<char16_t>(session, statement, column, kind);
}

}  // namespace velk
