// Several queries as one, each of which answers a single cell.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/odbc/dialect.h"

namespace velk {

struct JointQuery {
  std::string sql;
  std::vector<std::string> literals;  ///< of its marks
  bool isKnown = true;                ///< made of the system's own; else it has its literals in it
};

/// Answers one row, with a cell for each of the queries in their order.
JointQuery jointQuery(const Dialect& dialect, std::span<const std::string> queries);

}  // namespace velk
