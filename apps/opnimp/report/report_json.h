// The report of an import as one JSON document.
#pragma once

#include <ostream>

#include "apps/opnimp/report/import_result.h"

namespace velk {

void writeImportJson(const ImportResult& result, std::ostream& out);

}  // namespace velk
