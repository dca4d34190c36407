#include "platform/odbc/cell_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/date_reader.h"
#include "base/numbers.h"

namespace velk {
namespace {

Value bigIntegerCell(std::string text) {
  const auto number = exactNumber<std::int64_t>(text);
  // A number that a double would round stays a text, so that no digit is lost.
  if (!number || !fitsDouble(*number)) return text;
  return static_cast<double>(*number);
}

// An engine without column types gives large numbers in a column of small ones, too.
Value integerCell(std::string text) {
  const auto number = exactNumber<std::int32_t>(text);
  return number ? Value(*number) : bigIntegerCell(std::move(text));
}

// Some engines drop the zero before the point.
Value decimalCell(std::string text) {
  const std::size_t start = text.starts_with('-') ? 1 : 0;
  if (text.compare(start, 1, ".") == 0) text.insert(start, 1, '0');
  return text;
}

Value bitCell(std::string text) {
  // The words that automation makes of a bit.
  if (text == "1") return "True";
  if (text == "0") return "False";
  return text;
}

Value textCell(std::string text) {
  return text;
}

}  // namespace

Value doubleCell(std::string text) {
  const auto number = exactNumber<double>(text);
  return number ? Value(*number) : Value(std::move(text));
}

// Engines write dates year first; in any other order it is somebody's text.
Value dateCell(std::string text) {
  // With the year 0 a text without a year is no date: no calendar day has it.
  const auto reading = readDate(text, 0);
  if (reading && reading->order == DateOrder::YearMonthDay) return reading->date;
  return text;
}

CellReading cellReadingOf(SQLSMALLINT sqlType) {
  // SQL_DATE and SQL_TIMESTAMP are the numbers that dates had in ODBC 2.
  static constexpr std::pair<SQLSMALLINT, CellReading> readings[] = {
      {SQL_TINYINT, integerCell},     {SQL_SMALLINT, integerCell},
      {SQL_INTEGER, integerCell},     {SQL_BIGINT, bigIntegerCell},
      {SQL_REAL, doubleCell},         {SQL_FLOAT, doubleCell},
      {SQL_DOUBLE, doubleCell},       {SQL_DECIMAL, decimalCell},
      {SQL_NUMERIC, decimalCell},     {SQL_BIT, bitCell},
      {SQL_DATE, dateCell},           {SQL_TIMESTAMP, dateCell},
      {SQL_TYPE_TIMESTAMP, dateCell}, {SQL_TYPE_DATE, dateCell}};
  const auto* const found =
      std::ranges::find(readings, sqlType, &std::pair<SQLSMALLINT, CellReading>::first);
  return found == std::end(readings) ? textCell : found->second;
}

}  // namespace velk
