// Parts that the text reports of import and preview share.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// Rows of as many cells each, in columns; those from `leftColumns` on hold numbers, to the right.
void writeTable(const std::vector<std::vector<std::string>>& rows, std::size_t leftColumns,
                std::ostream& out);
void writeMapping(const std::vector<FieldMapping>& mapping, std::ostream& out);
/// `placeWord`: what the lines of a warning are, see InputRecords.
void writeWarnings(const std::vector<Warning>& warnings, std::string_view placeWord,
                   std::ostream& out);

}  // namespace velk
