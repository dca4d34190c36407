// What an export came to.
#pragma once

#include <ostream>
#include <string>

#include "apps/opnimp/audit/export_result.h"
#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"

namespace velk {

struct ExportOutcome {
  const Arguments& arguments;
  std::string database{};  ///< without passwords
  std::string errorLog{};  ///< path of the error log's file
  bool logged = false;     ///< whether anything was written there
  ExportedFile file{};
  std::string failure{};  ///< empty: the file is there and as it should be
  ExitStatus status = ExitStatus::Posted;
};

void writeExportText(const ExportOutcome& outcome, std::ostream& out);
void writeExportJson(const ExportOutcome& outcome, std::ostream& out);

}  // namespace velk
