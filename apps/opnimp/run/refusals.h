// Why nothing was imported, as the runner tells it: what the screen said, and where to mend it.
#pragma once

#include <string>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

/// Of a file that the screen did not view.
std::string viewRefusalText(const ImportReport& report, const InputRecords& input,
                            const ImportKind& kind);

/// Of a file that the screen viewed and did not import.
std::string runRefusalText(const Said& refusal, const InputRecords& input,
                           const std::vector<FieldMapping>& mapping, const ImportKind& kind);

/// Of a file with a record that lacks the value of a mandatory field.
std::string valueMissingText(const std::string& field, const InputRecords& input,
                             std::size_t record);

/// Of a file of which values would be read otherwise than they are written; empty if all of these
/// are accepted.
std::string misreadingsText(const std::vector<Warning>& warnings, const Arguments& arguments);

/// Of a file in which no column is mapped to some of the mandatory fields.
std::string unmappedText(const std::string& fields);

}  // namespace velk
