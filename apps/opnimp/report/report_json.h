// The report of an import as one JSON document.
#pragma once

#include <ostream>

#include "apps/opnimp/report/files_result.h"
#include "apps/opnimp/report/import_result.h"

namespace velk {

void writeImportJson(const ImportResult& result, std::ostream& out);
/// The documents of all files in one, with one account.
void writeFilesJson(const FilesResult& call, std::ostream& out);

}  // namespace velk
