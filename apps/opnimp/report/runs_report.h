// The list of a journal's runs.
#pragma once

#include <ostream>
#include <string>

#include "apps/opnimp/journal/run_index.h"

namespace velk {

void writeRunsText(const std::string& journal, const RunIndex& index, std::ostream& out);
void writeRunsJson(const std::string& journal, const RunIndex& index, std::ostream& out);

}  // namespace velk
