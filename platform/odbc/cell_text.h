// The values of cells that an engine gives as text.
#pragma once

#include "platform/database.h"
#include "platform/odbc/odbc_api.h"

namespace velk {

/// Makes a value of a cell's text; the text itself if it is no value of the column's kind.
using CellReading = Value (*)(std::string text);

/// How the cells of a column of an SQL type are read. Integers are 32-bit numbers; large ones
/// doubles if those are exact, else text. Decimals (currency too) are texts with a point; bits the
/// text "True" or "False".
CellReading cellReadingOf(SQLSMALLINT sqlType);

Value doubleCell(std::string text);
Value dateCell(std::string text);

}  // namespace velk
