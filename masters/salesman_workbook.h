// The salesmen's workbook: what the export writes and the import takes back.
#pragma once

#include <array>
#include <string_view>

namespace velk {

/// Columns of the worksheet. Row 1 holds the captions, each further row a salesman.
namespace salesmanColumn {
enum : int { Name = 1, Address, ResNumber, MobNumber, ExistingDSType, DSType, HandHeldDS };
}

/// By column, from column 1.
inline constexpr std::array<std::string_view, 7> salesmanCaptions{
    "Salesman", "Address", "ResNumber", "MobNumber", "Existing DSType", "DSType", "HandHeld DS"};

}  // namespace velk
