// The account of a run: every record of the file has exactly one outcome; what the import says that
// it called for each record is what the recorder saw; and the amounts that were posted come to what
// the file's records come to.
//
// Records and amounts are read from the file's bytes, never from the screen, so that an import that
// skipped, doubled or mixed up records would show.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/audit/sums.h"
#include "apps/opnimp/cli/kinds.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"

namespace velk {

struct Account {
  std::size_t fileRecords = 0;
  std::optional<long long> screenRecords;  ///< empty: the screen never viewed the file
  std::array<Sums, outcomeCount> byOutcome;
  Sums file;                   ///< all records
  Sums notes;                  ///< by the first calls of records that took effect; each bank once
  Sums entries;                ///< by the second ones; balances only
  std::size_t unreadable = 0;  ///< records with an amount beyond the range of a number: not summed
  std::size_t differenceCount = 0;
  std::vector<std::string> differences;  ///< the first ones, a sentence each

  std::set<std::string> keys;  ///< of what first calls saved, where records share it

  /// Adds the account of another file of the same kind.
  Account& operator+=(const Account& more);
  bool addsUp() const { return differenceCount == 0; }
  std::size_t count(Outcome outcome) const {
    return byOutcome[static_cast<std::size_t>(outcome)].count;
  }
};

struct AccountBasis {
  const ImportKind& kind;
  const InputRecords& input;
  const std::vector<FieldMapping>& mapping;
  const Traces& traces;
  std::optional<long long> screenRecords;  ///< as the screen counted them, if it did
  bool completed;                          ///< the run ended by itself
};

Account drawUpAccount(const AccountBasis& basis);

}  // namespace velk
