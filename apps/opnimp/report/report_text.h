// The report of an import as text.
#pragma once

#include <ostream>

#include "apps/opnimp/report/import_result.h"

namespace velk {

void writeImportText(const ImportResult& result, std::ostream& out);

}  // namespace velk
