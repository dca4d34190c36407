// Which file column each field of an import takes its values from.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

struct FieldMapping {
  std::string field;
  std::optional<std::size_t> column;  ///< of the file, from 0; empty: not mapped
  std::string title;                  ///< of that column
  bool operator==(const FieldMapping&) const = default;
};

/// How many of a record's first fields hold all that is mapped.
std::size_t mappedWidth(const std::vector<FieldMapping>& mapping);

/// The cell of a record that a field is mapped to, as long as the record's fields live; empty where
/// there is none, or no mapping.
std::string_view mappedCell(const std::vector<std::string>& fileFields,
                            const std::vector<FieldMapping>& mapping, std::size_t field);

/// Titles of those of the fields that are not mapped, separated by commas.
std::string unmappedFields(const std::vector<FieldMapping>& mapping,
                           std::span<const std::size_t> fields);

}  // namespace velk
