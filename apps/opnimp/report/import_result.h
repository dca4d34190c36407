// What an import came to.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apps/opnimp/audit/account.h"
#include "apps/opnimp/audit/outcome.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

struct ImportResult {
  Arguments arguments;
  std::string database;  ///< without passwords
  std::unique_ptr<const InputRecords> input;
  std::vector<FieldMapping> mapping;  ///< empty when the file could not be viewed
  std::vector<Warning> warnings;
  Traces traces;
  Account account;                          ///< empty when the run was refused
  std::string refusal;                      ///< why nothing was imported; empty: it was not refused
  std::vector<std::string> allowedDsTypes;  ///< looked up when a salesman was rejected
  std::string brokeOff;                     ///< why the run ended early; empty: it did not
  std::string errorLog;                     ///< path of the error log's file
  std::string journal;                      ///< its path; empty: the run is not in one
  std::uint64_t run = 0;                    ///< its number there
  std::vector<std::string> rejectFiles;     ///< paths written
  std::string rejectsError;                 ///< why they could not be written

  bool refused() const { return !refusal.empty(); }
  bool isDryRun() const { return arguments.dryRun; }
  ExitStatus status() const;
};

/// What the user should do now, a sentence each; never empty.
std::vector<std::string> nextSteps(const ImportResult& result);

}  // namespace velk
