// The salesmen's workbook: what the export writes and the import takes back.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "platform/spreadsheet.h"

namespace velk {

/// Columns of the worksheet. Row 1 holds the captions, each further row a salesman.
namespace salesmanColumn {
enum : int { Name = 1, Address, ResNumber, MobNumber, ExistingDSType, DSType, HandHeldDS };
}

/// What file dialogs show of them.
inline constexpr std::string_view workbookFilter = "Excel Spreadsheets (*.xls)|*.xls";

/// By column, from column 1.
inline constexpr std::array<std::string_view, 7> salesmanCaptions{
    "Salesman", "Address", "ResNumber", "MobNumber", "Existing DSType", "DSType", "HandHeld DS"};

/// The columns that are imported, in the order of the preview and of the fields. Existing DSType
/// only tells users what they changed.
inline constexpr std::array<int, 6> importedSalesmanColumns{
    salesmanColumn::Name,      salesmanColumn::Address, salesmanColumn::ResNumber,
    salesmanColumn::MobNumber, salesmanColumn::DSType,  salesmanColumn::HandHeldDS};
/// The fields that the columns become.
namespace salesmanField {
enum : std::size_t { Name, Address, ResNumber, MobNumber, DSType, HandHeldDS };
}

/// A column whose cells take the values of a list. A hidden column contains these from row 2 on,
/// under the caption "DSType", whichever list it is.
struct PickList {
  int column;
  int listColumn;
};
inline constexpr PickList dsTypeList{salesmanColumn::DSType, 250};
inline constexpr PickList handheldList{salesmanColumn::HandHeldDS, 251};
/// Later rows have no pick list, however many there are.
inline constexpr int lastPickRow = 1000;

/// All that an import looks at: seven columns and the lists behind them.
ColumnSet salesmanColumns();

/// Writes the captions, bold.
void writeSalesmanCaptions(WorksheetWriter& sheet);
/// Writes a list with its caption, and makes it the pick list of its column.
void writePickList(WorksheetWriter& sheet, const PickList& list,
                   std::span<const std::string> values);

}  // namespace velk
