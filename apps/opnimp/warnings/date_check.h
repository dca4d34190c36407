// Dates as people write them, and what the reader of dates makes of them.
#pragma once

#include <optional>
#include <string>

#include "apps/opnimp/warnings/warning_texts.h"

namespace velk {

struct DateWarning {
  WarningId id;
  std::string readAs;
};

/// What is doubtful about a date; empty if nothing is, or if the import refuses its record.
/// `endsRun`: a date that cannot be read stops the import.
std::optional<DateWarning> checkDate(const std::string& text, int currentYear, bool endsRun);

}  // namespace velk
