// What a preview shows.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "apps/opnimp/report/import_result.h"

namespace velk {

/// The file as the screen shows it.
struct PreviewTable {
  std::vector<std::string> titles;             ///< of all columns
  std::vector<std::vector<std::string>> rows;  ///< the first ones, a cell for each title
};

/// `result`: what an import would come to, as far as the file tells.
void writePreviewText(const ImportResult& result, const PreviewTable& table, std::ostream& out);
void writePreviewJson(const ImportResult& result, const PreviewTable& table, std::ostream& out);

}  // namespace velk
