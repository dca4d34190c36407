// What a preview shows.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/records/input_records.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

struct PreviewResult {
  Arguments arguments;
  std::unique_ptr<const InputRecords> input;
  std::vector<FieldMapping> mapping;  ///< empty if the preview was refused
  std::vector<Warning> warnings;
  std::string refusal;                         ///< empty: it was not refused
  std::vector<std::string> titles;             ///< of all columns that the screen shows
  std::vector<std::vector<std::string>> rows;  ///< the first ones, a cell for each title

  ExitStatus status() const { return refusal.empty() ? ExitStatus::Posted : ExitStatus::Refused; }
};

void writePreviewText(const PreviewResult& preview, std::ostream& out);
void writePreviewJson(const PreviewResult& preview, std::ostream& out);

}  // namespace velk
