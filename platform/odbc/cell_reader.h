// Reads the cells of a result as values.
#pragma once

#include "platform/database.h"
#include "platform/odbc/odbc_session.h"

namespace velk {

/// How a column's cells are read. Integer: 32-bit. BigInteger: a double if that is exact, else
/// text. Decimal (currency too): text with a point. Bit: the text "True" or "False".
enum class ColumnKind { Integer, BigInteger, Double, Decimal, Bit, Date, Text };

ColumnKind columnKindOf(SQLSMALLINT sqlType);

/// The value of a cell that the engine gave as text, by its column's kind; the text itself if it is
/// no value of that kind.
Value interpretCell(ColumnKind kind, std::string text);

/// The kind of a result column; `column` counts from 1.
ColumnKind describeColumn(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column);

/// The cell of the current row, whole whatever its length. To be called once for each cell, columns
/// in ascending order.
Value readCell(OdbcSession& session, SQLHANDLE statement, SQLUSMALLINT column, ColumnKind kind);

}  // namespace velk
