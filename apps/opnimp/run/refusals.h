// Why nothing was imported, as the runner tells it: what the screen said, and where to mend it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/report/import_result.h"
#include "base/dates.h"

namespace velk {

/// Of a file without columns for these mandatory fields.
std::string unmappedText(const std::string& fields);

/// Of a file that the screen did not view.
std::string viewRefusalText(const ImportReport& report, const InputRecords& input,
                            const ImportKind& kind);

/// Of a file that the screen viewed and did not import.
std::string runRefusalText(const Said& refusal, const InputRecords& input,
                           const std::vector<FieldMapping>& mapping, const ImportKind& kind);

/// Raises Refused when values would be read otherwise than they are written, not all of these being
/// accepted, or when there are neither records nor mandatory columns. A file that the screen itself
/// refuses is left to it: it says what has to be mended first.
void requireImportable(const ImportResult& result);

/// Raises Refused for documents that are dated before the first day that the database can hold, and
/// for those without a date where it has none for them. `firstDate`: see ImportCall, asked only if
/// there are such documents.
void requireDates(const ImportResult& result, Date earliest, int currentYear,
                  const std::function<std::optional<Date>()>& firstDate);

/// Raises Refused for what the screen itself would refuse at Import: too late if something was
/// posted by then.
void requireWhole(const ImportResult& result);

}  // namespace velk
