// How a text is laid out: what ends its lines, what separates its values, which line has the
// titles.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/convert/assumption.h"
#include "apps/opnimp/convert/row_reader.h"

namespace velk {

struct Layout {
  LineEnds ends = LineEnds::Pairs;
  char delimiter = ',';
  std::size_t offset = 0;      ///< of the line with the titles
  std::size_t headerLine = 1;  ///< its number
  bool isCanonical = true;     ///< it is that of the screens
  std::string separatorLine;   ///< "line 1 says sep=;", where it does
  std::vector<Assumption> assumptions;
  std::string refusal;               ///< why the line of the titles is not sure; empty: it is
  std::vector<std::string> choices;  ///< options that decide it

  RowReader rows(std::string_view text) const {
    return RowReader(text, delimiter, ends, offset, headerLine);
  }
};

/// Raises UsageError for a line of titles that the text does not have.
Layout findLayout(std::string_view text, const Arguments& arguments);

/// The same of the text of a worksheet.
Layout findSheetLayout(std::string_view text, const Arguments& arguments);
/// How many titles of the kind a line near the beginning of such a text has at most.
std::size_t countSheetTitles(std::string_view text, const Arguments& arguments);

/// "semicolon", or the sign itself.
std::string delimiterName(char delimiter);

/// A title of the kind's own, in UTF-8.
bool isOwnTitle(std::string_view title, const Arguments& arguments);
/// The same, or one of --map; not by a number: any line has a third value.
bool namesField(std::string_view title, const Arguments& arguments);

/// The title by which a column maps without further ado to what --map says of it, or its own with
/// its number, if --map takes that from it; empty: it keeps its own.
std::string fieldTitleOf(const std::string& title, std::size_t column, const Arguments& arguments);

/// Date or Amount of a column that is used for such a field of the kind, by its title, in UTF-8, or
/// by --map; else Text. `column` counts from 0.
FieldNature natureOf(std::string_view title, std::size_t column, const Arguments& arguments);

}  // namespace velk
