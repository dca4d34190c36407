#include "masters/salesman_workbook.h"

namespace velk {

ColumnSet salesmanColumns() {
  ColumnSet columns;
  for (std::size_t i = 0; i < salesmanCaptions.size(); ++i) columns.set(i);
  for (const PickList& list : {dsTypeList, handheldList}) {
    columns.set(static_cast<std::size_t>(list.listColumn) - 1);
  }
  return columns;
}

// Bold goes one column further than the captions, as in all workbooks written before.
void writeSalesmanCaptions(WorksheetWriter& sheet) {
  constexpr CellRange boldCells{1, 1, 1, 8};
  int column = salesmanColumn::Name;
  for (const std::string_view caption : salesmanCaptions) sheet.setText(1, column++, caption);
  sheet.setBold(boldCells);
}

void writePickList(WorksheetWriter& sheet, const PickList& list,
                   std::span<const std::string> values) {
  constexpr double width = 30;
  sheet.setText(1, list.listColumn,
                "DSType");  // above both lists, as imports of older files know it
  int lastRow = 1;
  for (const std::string& value : values) sheet.setText(++lastRow, list.listColumn, value);
  // Without a value the list ends at row 1 and so contains the caption and a blank cell: an empty
  // source would make the whole workbook unreadable.
  sheet.addListValidation({2, list.column, lastPickRow, list.column},
                          {2, list.listColumn, lastRow, list.listColumn});
  sheet.setColumnWidth(list.column, width);
  sheet.hideColumn(list.listColumn);
}

}  // namespace velk
