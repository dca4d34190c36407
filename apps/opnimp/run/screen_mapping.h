// The mapping of a screen: read, and made by hand as a user makes it.
#pragma once

#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/convert/conversion.h"
#include "apps/opnimp/records/field_mapping.h"
#include "mapping/import_screen.h"

namespace velk {

/// What is mapped now. To be read before an import, which empties the screen.
std::vector<FieldMapping> readMapping(const ImportScreen& screen);

/// Raises Refused for a date or an amount in a column that was not read as one: by a title that the
/// screens show otherwise than the file has it.
void requireReadAsMapped(const ImportScreen& screen, const Arguments& arguments,
                         const Conversion& conversion);

/// Raises Refused, with the titles of the profile that the file does not have.
void requireTitles(const ImportScreen& screen, const Arguments& arguments);

/// The option with the column's number, if it names a title that the screens show otherwise.
MapOption mapAsShown(MapOption option, const Conversion& conversion);

/// Clicks the file column's header and then the field's. Raises Refused when there is no such
/// column or field, or when the screen does not map it; then with what the screen said.
void mapByHand(ImportScreen& screen, ImportReport& report, const MapOption& option);

}  // namespace velk
