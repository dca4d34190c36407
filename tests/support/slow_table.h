// A comma-separated text as a table, by the one-pass reader and line by line, for tests that hold
// one against the other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "mapping/csv_table.h"
#include "shared/csv_text.h"

namespace velk {

struct Table {
  std::vector<std::string> titles;
  std::vector<std::vector<std::string>> rows;
  std::size_t nonEmptyLines = 0;
  int unquoteFailures = 0;
  int faults = 0;  ///< what contradicts itself, or is told by another error; the slow way has none

  bool operator==(const Table&) const = default;
};

/// The slow and obvious way: lines, fields, quotes, one string each.
inline Table slowly(std::string_view text) {
  Table table;
  bool header = true;
  for (bool more = true; more; header = false) {
    const std::size_t end = text.find("\r\n");
    more = end != std::string_view::npos;
    const std::string_view line = text.substr(0, end);
    if (more) text.remove_prefix(end + 2);
    if (!line.empty()) ++table.nonEmptyLines;
    std::vector<std::string> fields = splitLine(line, QuotedComma::Drop);
    if (header) {
      table.titles = fields;
    } else if (!line.empty()) {
      fields.resize(table.titles.size());
      for (std::string& field : fields) {
        if (field == "\"") ++table.unquoteFailures;
        field.resize(field == "\"" ? 0 : unquoteInPlace(field.data(), field.size()));
      }
      table.rows.push_back(fields);
    }
  }
  return table;
}

inline Table quickly(std::string_view text) {
  Table table;
  const FileTable csv = readCsvTable(std::string(text), [&](const RuntimeError& error) {
    ++table.unquoteFailures;
    if (!error.is(ErrorNumber::InvalidProcedureCall)) ++table.faults;
  });
  table.titles = csv.titles;
  table.nonEmptyLines = csv.nonEmptyLines;
  table.rows.assign(csv.rows, std::vector<std::string>(csv.titles.size()));
  for (std::size_t column = 0; column < csv.columns.size(); ++column) {
    const auto& cells = *csv.columns[column];
    if (cells.size() != csv.rows) ++table.faults;
    for (std::size_t row = 0; row < csv.rows; ++row) {
      std::string& cell = table.rows[row][column];
      cell = cells[row];
      if (cells.isEmpty(row) != cell.empty()) ++table.faults;
    }
  }
  return table;
}

}  // namespace velk
