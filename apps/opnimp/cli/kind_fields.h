// The columns of a file of each kind: how they are titled, and what they may be.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace velk {

enum class FieldNature : std::uint8_t { Text, Code, Date, Amount, Choice };

struct FieldTitle {
  std::string_view title;  ///< by which a column maps without further ado, in any letter case
  FieldNature nature = FieldNature::Text;
  bool mandatory = false;  ///< every record has to have a value
  std::string_view what;   ///< what it may be, for users
  std::string_view example;
};

extern const std::span<const FieldTitle> customerOpeningFields;
extern const std::span<const FieldTitle> vendorOpeningFields;
extern const std::span<const FieldTitle> bankBranchFields;
extern const std::span<const FieldTitle> vendorFields;
/// Of the workbook.
extern const std::span<const FieldTitle> salesmanFileColumns;

/// Such as "code".
std::string_view natureName(FieldNature nature);

}  // namespace velk
