// How a number shows: as its cell's number format says.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/sheet_sink.h"

namespace velk {

/// The format codes that a workbook need not spell out, by their numbers; the general one for the
/// rest. Short dates are day first, as everywhere in the system.
std::string_view builtInFormat(std::uint16_t number);

/// A number that stands for a day, as base/dates.h counts. Spreadsheets count a 29 February 1900,
/// which never was.
double daysOfSerial(double serial, bool from1904);

/// A format code, made ready for use. Understood are sections for negative numbers and zero,
/// digits, decimals, groups of three, percent, texts within, and dates and times with English
/// names. What would hide digits that a user may need (exponents, fractions, conditions, empty
/// sections), and codes of more than 255 bytes, show as the general format.
class NumberFormat {
 public:
  explicit NumberFormat(std::string_view code);

  /// `from1904`: dates are days since 1 January 1904; else as in base/dates.h, except that the
  /// 29 February 1900, which never was, counts as a day.
  std::string text(double value, bool from1904) const;
  /// Whether it shows the number as a day, with or without a time of it.
  bool showsDay(double value, bool from1904) const;

 private:
  enum class Part : std::uint8_t { Literal, Digit, Point, Comma, Percent, Date, Elapsed, AmPm };
  struct Token {
    Part part;
    char byte;  ///< of a literal; 0, # or ? of a digit; the letter of a date
  };
  struct Section {
    bool general = false;
    bool date = false;
    bool slash = false;
    std::vector<Token> tokens;
  };
  class Compiler;
  class NumberText;
  class DateText;

  const Section& sectionFor(double value) const;

  std::vector<Section> sections_;
};

/// Makes of a cell a number or a date, as its format says; its text is not set.
void setNumber(SheetCell& cell, double value, const NumberFormat& format, bool from1904);

}  // namespace velk
