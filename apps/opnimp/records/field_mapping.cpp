#include "apps/opnimp/records/field_mapping.h"

#include <algorithm>

namespace velk {

// Nothing after the last mapped column has to be read.
std::size_t mappedWidth(const std::vector<FieldMapping>& mapping) {
  std::size_t width = 0;
  for (const FieldMapping& entry : mapping) {
    if (entry.column) width = std::max(width, *entry.column + 1);
  }
  return width;
}

std::string_view mappedCell(const std::vector<std::string>& fileFields,
                            const std::vector<FieldMapping>& mapping, std::size_t field) {
  if (field >= mapping.size()) return {};
  // A short record ends before some mapped columns: their cells are empty.
  const std::optional<std::size_t> column = mapping[field].column;
  if (!column || *column >= fileFields.size()) return {};
  return fileFields[*column];
}

std::string unmappedFields(const std::vector<FieldMapping>& mapping,
                           std::span<const std::size_t> fields) {
  std::string titles;
  for (const std::size_t field : fields) {
    if (mapping.at(field).column) continue;
    titles.append(titles.empty() ? "" : ", ").append(mapping[field].field);
  }
  return titles;
}

}  // namespace velk
