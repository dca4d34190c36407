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

/// A text that is longer than a procedure of the database takes.
struct LongValue {
  std::size_t record = 0;  ///< from 0
  std::string procedure;
  std::string parameter;
  std::size_t takes = 0;  ///< UTF-16 units, as the next one
  std::size_t length = 0;
  std::string text{};
  std::size_t line = 0;
};

struct FilePreview {
  const ImportResult& result;  ///< what an import would come to, as far as the file tells
  const PreviewTable& table;
  std::vector<LongValue> longValues{};  ///< where a database was named
};

/// Of one file or of several, which an import would end with `status`.
void writePreviewText(const std::vector<FilePreview>& files, ExitStatus status, std::ostream& out);
void writePreviewJson(const std::vector<FilePreview>& files, ExitStatus status, std::ostream& out);

}  // namespace velk
