// Texts that are longer than what a procedure takes, which some engines cut without a word.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "apps/opnimp/audit/run_gate.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/report/preview_report.h"
#include "apps/opnimp/warnings/warnings.h"
#include "platform/database.h"

namespace velk {

/// What procedures take, by the database's catalogue, which is asked once for each.
class Catalogue {
 public:
  /// The database lives as long, and answers behind the gate.
  Catalogue(OwnConnection& database, RunGate& gate) : database_(database), gate_(gate) {}

  /// Empty where it does not tell.
  const std::vector<CatalogueParameter>& parametersOf(const std::string& procedure);
  /// Of any text that an import of the kind passes.
  bool tellsLengths(const ImportKind& kind);

 private:
  OwnConnection& database_;
  RunGate& gate_;
  std::map<std::string, std::vector<CatalogueParameter>> known_;
};

/// Of all calls that the records make.
std::vector<LongValue> findLongValues(const ImportResult& result, Catalogue& catalogue);

/// A harmful warning for each of the records that has such values.
void addLongValues(std::vector<Warning>& warnings, std::span<const LongValue> values,
                   const InputRecords& input);

}  // namespace velk
