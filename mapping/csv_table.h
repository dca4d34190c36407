// A comma-separated file as the preview shows it: titles, and columns of texts that share one
// buffer.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/errors.h"
#include "platform/text_column.h"
#include "shared/file_text.h"

namespace velk {

struct CsvTable {
  /// The fields of the first line, quotes and blanks kept.
  std::vector<std::string> titles;
  /// One column a title, one row a further line that is not empty. Cells beyond the titles are left
  /// out, missing cells are empty.
  std::vector<std::shared_ptr<const TextColumn>> columns;
  std::size_t rows = 0;
  /// All lines that are not empty, the first one included.
  std::size_t nonEmptyLines = 0;
};

/// More cells than this (a quarter of a gigabyte of offsets) are refused as out of memory: a file
/// of a few megabytes can ask for that by one long first line above many short ones.
inline constexpr std::size_t maxCells = std::size_t{1} << 26;

/// More columns than this are refused likewise: no list shows them, and each costs an object.
inline constexpr std::size_t maxColumns = 32767;

/// Lines end at each carriage return + line feed pair and nowhere else. The text's buffer is
/// rewritten in place and kept by the columns. A field that can't be unquoted is reported and
/// empty. Errors: 9 for an empty text, 7 beyond maxCells or maxColumns.
CsvTable readCsvTable(FileText text, const std::function<void(const RuntimeError&)>& unquoteFailed);

}  // namespace velk
