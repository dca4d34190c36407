// What an import asks and calls, by kind: what a database has to have for it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/kinds.h"
#include "platform/database.h"

namespace velk {

struct ProcedureNeed {
  std::string_view name;
  std::size_t parameters;
  /// What an import passes, a letter each: t a text, d a date, n an amount; empty: not compared.
  std::string_view passes{};
};

struct CompanyNeeds {
  std::vector<std::string> lookUps;  ///< as the import sends them, for a code that is empty
  std::vector<ProcedureNeed> procedures;
};

/// Without which no record of the kind could be posted. That the screens' colours are looked up as
/// well does not count.
CompanyNeeds needsOf(const ImportKind& kind);

/// The parameters that would change or refuse what is passed, such as "amount (int): amounts have
/// fractions". Types that are not known are trusted.
std::vector<std::string> unfitParameters(const ProcedureNeed& need,
                                         const std::vector<CatalogueParameter>& takes);

inline constexpr std::string_view noFirstDate =
    "there is no date that can be read, and a document without one would get a wrong one";

}  // namespace velk
