// What an import asks and calls, by kind: what a database has to have for it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/kinds.h"

namespace velk {

struct ProcedureNeed {
  std::string_view name;
  std::size_t parameters;
};

struct CompanyNeeds {
  std::vector<std::string> lookUps;  ///< as the import sends them, for a code that is empty
  std::vector<ProcedureNeed> procedures;
};

/// Without which no record of the kind could be posted. That the screens' colours are looked up as
/// well does not count.
CompanyNeeds needsOf(const ImportKind& kind);

}  // namespace velk
