// What the journal knows files and records again by.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/journal/journal_entries.h"
#include "apps/opnimp/records/input_records.h"

namespace velk {

Digest hashOf(std::string_view bytes);

/// What a record's hash depends on besides the file.
struct HashBasis {
  int currentYear = 0;  ///< for dates without a year
  /// The date that the database gives a record without one, asked when there is such a record;
  /// empty, or an empty answer: it stays without.
  std::function<std::optional<Date>()> undated{};
  bool asWritten = false;  ///< balances keep their own sign, as earlier versions had it
};

/// Each record of the file by what is posted of it: of opening balances code and reference without
/// letter case (A to Z) and blanks around them, date and amounts as they are read, the
/// balance on the side of its bill, so that another way to write the same does not hide it; of
/// master data the mapped cells.
std::vector<JournaledRecord> hashRecords(const ImportKind& kind, const InputRecords& input,
                                         const std::vector<FieldMapping>& mapping,
                                         const HashBasis& by);

}  // namespace velk
