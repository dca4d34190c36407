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

struct FilePreview {
  const ImportResult& result;  ///< what an import would come to, as far as the file tells
  const PreviewTable& table;
};

/// Of one file or of several, which an import would end with `status`.
void writePreviewText(const std::vector<FilePreview>& files, ExitStatus status, std::ostream& out);
void writePreviewJson(const std::vector<FilePreview>& files, ExitStatus status, std::ostream& out);

}  // namespace velk
