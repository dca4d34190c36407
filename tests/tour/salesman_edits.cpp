#include "tests/tour/salesman_edits.h"

#include <algorithm>
#include <array>
#include <utility>

#include "masters/salesman_workbook.h"
#include "platform/spreadsheet/xls/xls_spreadsheet.h"
#include "platform/windows/windows_files.h"

namespace velk {

namespace {

// Van Sales is in the pick list, but is no type that salesmen may be given by import.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> edits{
    {{"Anil Kamble", "Rural"}, {"Kiran Pawar", "Van Sales"}, {"Mangesh Gaikwad", "Wholesale"}}};

}  // namespace

void editSalesmen(std::string_view from, std::string_view to) {
  WindowsFileSystem files;
  XlsSpreadsheet spreadsheet(files);
  const auto old = spreadsheet.open(from, ColumnSet().set());
  const auto sheet = spreadsheet.add();
  for (int row = 1; row <= old->rowCount(); ++row) {
    for (int column = 1; column <= static_cast<int>(salesmanCaptions.size()); ++column) {
      sheet->setText(row, column, old->text(row, column));
    }
    const auto edit = std::ranges::find(edits, old->text(row, salesmanColumn::Name),
                                        [](const auto& e) { return e.first; });
    if (edit != edits.end()) sheet->setText(row, salesmanColumn::DSType, edit->second);
  }
  sheet->saveAs(to);
}

}  // namespace velk
