#include "apps/opnimp/audit/export_result.h"

#include <algorithm>
#include <iterator>

#include "apps/opnimp/records/file_bytes.h"
#include "base/text.h"

namespace velk {

namespace {

using Rows = std::vector<std::string>;

// One text for each row, so that rows can be sorted and compared as a whole.
template <class CellText>
std::string rowText(CellText cellText) {
  std::string row;
  for (int column = 1; column <= WorkbookRecords::lastColumn; ++column) {
    // The first line of a row is the name, which differenceOf shows.
    row.append(trim(cellText(column))) += '\n';
  }
  return row;
}

Rows rowsOfFile(const WorkbookRecords& file) {
  Rows rows;
  for (std::size_t record = 0; record < file.count(); ++record) {
    const int row = static_cast<int>(file.place(record).line);
    rows.push_back(rowText([&](int column) { return file.text(row, column); }));
  }
  return rows;
}

/// A value of a salesman by its control's place: 1 the DS type, 2 the handheld value.
std::string typeQuery(int place) {
  return "(select DSTypeValue from DSType_Master M, DStype_Details D where M.DSTypeID = D.DSTypeID "
         "and D.SalesmanID = S.SalesmanID and DSTypeCtlPos = " +
         std::to_string(place) + ")";
}

Rows rowsOfDatabase(Connection& connection) {
  const auto answer =
      connection.Execute("select Salesman_name, Address, ResidentialNUmber, MobileNumber, " +
                         typeQuery(1) + ", " + typeQuery(2) + " from Salesman S");
  constexpr std::size_t dsType = 4;
  constexpr std::size_t handheld = 5;
  Rows rows;
  for (; !answer->isEOF(); answer->MoveNext()) {
    rows.push_back(rowText([&](int column) {
      // A salesman without a handheld value is exported with No.
      if (column == salesmanColumn::HandHeldDS) {
        const Value value = answer->field(handheld);
        return isNull(value) ? std::string("No") : toText(value);
      }
      // Columns E (existing DS type) and F (DS type) are exported with the same value.
      return toText(answer->field(std::min(static_cast<std::size_t>(column) - 1, dsType)));
    }));
  }
  return rows;
}

/// Both are sorted here, since the database orders texts by its own rules.
std::string differenceOf(Rows file, Rows database) {
  if (file.size() != database.size()) {
    return "it holds " + std::to_string(file.size()) + " salesmen, the database " +
           std::to_string(database.size());
  }
  // Sorted only now, because the numbers of rows alone may already differ.
  std::ranges::sort(file);
  std::ranges::sort(database);
  Rows missing;
  std::ranges::set_difference(database, file, std::back_inserter(missing));
  if (missing.empty()) return {};
  const std::string& row = missing.front();
  return "\"" + row.substr(0, row.find('\n')) + "\" is not in it as the database has him";
}

}  // namespace

ExportedFile readExported(FileSystem& files, const std::string& path, Connection& connection) {
  const WorkbookRecords file(readBytes(files, path));
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
