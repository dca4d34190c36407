// An import file as the preview shows it: titles, and columns of texts that share one buffer.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/text_column.h"

namespace velk {

struct FileTable {
  std::vector<std::string> titles;
  /// One column a title, one row a record. Missing cells are empty.
  std::vector<std::shared_ptr<const TextColumn>> columns;
  std::size_t rows = 0;
  /// All lines that are not empty, that of the titles included.
  std::size_t nonEmptyLines = 0;
};

}  // namespace velk
