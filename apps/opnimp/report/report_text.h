// The report of an import as text.
#pragma once

#include <ostream>

#include "apps/opnimp/report/files_result.h"
#include "apps/opnimp/report/import_result.h"

namespace velk {

void writeImportText(const ImportResult& result, std::ostream& out);
/// The reports of all files, one after the other, and one account of them.
void writeFilesText(const FilesResult& call, std::ostream& out);

}  // namespace velk
