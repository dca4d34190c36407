// What a file of opening balances holds for each party, and what of it was posted.
#pragma once

#include <string>
#include <vector>

#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/audit/sums.h"

namespace velk {

struct PartyTotals {
  std::string code;  ///< as its first record has it
  std::string name;  ///< likewise; empty when it is not mapped
  Sums file;
  Sums posted;  ///< of the records that took effect as a whole
};

/// By code, in which letter case makes no difference. None for master data.
std::vector<PartyTotals> partyTotals(const ImportKind& kind, const InputRecords& input,
                                     const std::vector<FieldMapping>& mapping,
                                     const Traces& traces);

}  // namespace velk
