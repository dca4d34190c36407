// What the journal knows files and records again by.
#pragma once

#include <string_view>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/journal/journal_entries.h"
#include "apps/opnimp/records/input_records.h"

namespace velk {

Digest hashOf(std::string_view bytes);

/// Each record of the file by what is posted of it: of opening balances code and reference without
/// letter case (A to Z) and blanks around them, date and amounts as they are read, so that another
/// way to write the same does not hide it; of master data the mapped cells. `currentYear` fills a
/// missing year. A missing date stays one, although the database fills it.
std::vector<JournaledRecord> hashRecords(const ImportKind& kind, const InputRecords& input,
                                         const std::vector<FieldMapping>& mapping, int currentYear);

}  // namespace velk
