// What the host's main window can show: the sample company's tables and the error log.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace velk {

enum class ColumnKind { Text, Amount, Date };

struct TableColumn {
  const char* title;
  ColumnKind kind = ColumnKind::Text;
};

struct CompanyTable {
  std::string_view name;
  std::string query;  ///< gives a value for each column
  std::vector<TableColumn> columns;
};

std::span<const CompanyTable> companyTables();

using TableRow = std::vector<std::string>;

/// The rows of a table as texts: doubles with two decimals, dates day first, as the files have
/// them. Errors: the database's.
std::vector<TableRow> tableRows(Connection& connection, const CompanyTable& table);

/// The lines of the component's error log, one cell each, the newest first; empty if there is no
/// log. Error 70 for a log that cannot be opened.
std::vector<TableRow> errorLogLines(const std::wstring& path);

}  // namespace velk
