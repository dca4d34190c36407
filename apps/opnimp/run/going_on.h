// Where a run goes on whose server was lost, found out at the server that it goes on with.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/run/document_lookup.h"

namespace velk {

struct GoingOn {
  std::size_t first = 0;  ///< the record to go on with; nothing of it, or behind it, is there
  /// The record before it whose last call may be missing although it was confirmed.
  std::optional<std::size_t> doubtful;
  /// By file of the call before it: the first record that is in doubt; empty: none is.
  std::vector<std::optional<std::size_t>> earlier;
  std::string found;  ///< what is said of it
};

struct LostRun {
  const Recorder& recorder;
  const ImportReport& report;
  std::span<const Recorder* const> earlier;  ///< of the files of the call before it, in their order
  bool hasAllConfirmed;  ///< the server that it goes on with has all that the lost one confirmed
  bool hasEnded;         ///< nothing more can come of what was sent to that one
  bool isFirst;          ///< it takes up no earlier run, which can have lost anything with it
  bool mayBeCopies;      ///< what the run posts may have been there before it
};

/// Raises RunEnded where confirmed changes may be missing and cannot be looked up.
GoingOn findGoingOn(const LostRun& run, DocumentLookup& lookup);

}  // namespace velk
