// The files that the import of a file leaves for the user: those of --rejects, and the page of
// --report.
#pragma once

#include <optional>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/report/reject_files.h"
#include "apps/opnimp/run/run_support.h"

namespace velk {

/// What the arguments ask for.
std::vector<Writes> outputsOf(const Arguments& arguments);

class ImportOutputs {
 public:
  /// Tries them before the run, because after it what they are for would have no place to go.
  /// Raises UsageError and CannotOpen.
  explicit ImportOutputs(const Arguments& arguments);

  bool hasRejects() const { return rejects_.has_value(); }
  /// Each tells in the result what was written, and what failed: the run is over already, and its
  /// report must appear in any case.
  void writeRejects(ImportResult& result);
  static void writeReport(ImportResult& result);

 private:
  std::optional<RejectFiles> rejects_;
};

}  // namespace velk
