// What a user changes in an exported workbook of salesmen.
#pragma once

#include <string_view>

namespace velk {

/// Gives three salesmen other DS types, one of which an import refuses, and saves the workbook
/// under another name.
void editSalesmen(std::string_view from, std::string_view to);

}  // namespace velk
