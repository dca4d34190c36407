#include "apps/opnimp/export_result.h"

#include <algorithm>

#include "platform/text.h"

namespace velk {

namespace {

constexpr int comparedColumns = salesmanColumn::MobNumber;

using Rows = std::vector<std::string>;

template <class CellText>
std::string joined(CellText cellText) {
  std::string row;
  for (int column = 1; column <= comparedColumns; ++column) {
    row.append(trim(cellText(column))) += '\n';
  }
  return row;
}

Rows rowsOfFile(const WorkbookRecords& file) {
  Rows rows;
  for (std::size_t record = 0; record < file.count(); ++record) {
    const int row = static_cast<int>(file.place(record).line);
    rows.push_back(joined([&](int column) { return file.text(row, column); }));
  }
  return rows;
}

Rows rowsOfDatabase(Connection& connection) {
  const auto answer = connection.Execute(
      "select Salesman_name, Address, ResidentialNUmber, MobileNumber from Salesman");
  Rows rows;
  for (; !answer->isEOF(); answer->MoveNext()) {
    rows.push_back(joined(
        [&](int column) { return toText(answer->field(static_cast<std::size_t>(column) - 1)); }));
  }
  return rows;
}

/// Both in the same order: the database's differs from ours.
std::string differenceOf(Rows file, Rows database) {
  if (file.size() != database.size()) {
    return "it holds " + std::to_string(file.size()) + " salesmen, the database " +
           std::to_string(database.size());
  }
  std::ranges::sort(file);
  std::ranges::sort(database);
  const auto differing = std::ranges::mismatch(file, database).in2;
  if (differing == database.end()) return {};
  return "\"" + differing->substr(0, differing->find('\n')) +
         "\" of the database does not stand in it as he does there";
}

}  // namespace

ExportedFile readExported(FileSystem& files, const std::string& path, Connection& connection) {
  const WorkbookRecords file(files, path);
  ExportedFile exported;
  if (!file.hasCaptions()) {
    exported.difference = "it is no salesman workbook";
    return exported;
  }
  exported.salesmen = file.count();
  exported.dsTypes = file.valuesOf(dsTypeList);
  exported.handheldValues = file.valuesOf(handheldList);
  exported.difference = differenceOf(rowsOfFile(file), rowsOfDatabase(connection));
  return exported;
}

}  // namespace velk
