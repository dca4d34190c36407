// What an export of salesmen came to, found in the file that was written and not taken from the
// screen's word.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/opnimp/records/workbook_records.h"
#include "platform/database.h"

namespace velk {

struct ExportedFile {
  std::size_t salesmen = 0;
  std::vector<std::string> dsTypes;         ///< that the drop-down list offers
  std::vector<std::string> handheldValues;  ///< likewise
  std::string difference;                   ///< from the database's salesmen; empty: there is none
};

/// Reads the file back and holds it against the database. RuntimeError when either fails.
ExportedFile readExported(FileSystem& files, const std::string& path, Connection& connection);

}  // namespace velk
