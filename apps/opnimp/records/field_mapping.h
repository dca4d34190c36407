// Which file column each field of an import takes its values from.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/cli/arguments.h"
#include "mapping/import_screen.h"

namespace velk {

struct FieldMapping {
  std::string field;
  std::optional<std::size_t> column;  ///< of the file, from 0; nothing: not mapped
  std::string title;                  ///< of that column
};

/// What is mapped now. To be read before an import, which empties the screen.
std::vector<FieldMapping> readMapping(const ImportScreen& screen);

/// Clicks the file column's header and then the field's. Raises Refused when there is no such
/// column or field, or when the screen does not map it; then with what the screen said.
void mapByHand(ImportScreen& screen, const Recorder& recorder, const MapOption& option);

/// How many of a record's first fields hold all that is mapped.
std::size_t mappedWidth(const std::vector<FieldMapping>& mapping);

/// The cell of a record that a field is mapped to; empty where there is none, or no mapping.
std::string mappedCell(const std::vector<std::string>& fileFields,
                       const std::vector<FieldMapping>& mapping, std::size_t field);

/// Titles of those of the fields that are not mapped, separated by commas.
std::string unmappedFields(const std::vector<FieldMapping>& mapping,
                           std::span<const std::size_t> fields);

}  // namespace velk
