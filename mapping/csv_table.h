// A comma-separated file as the preview shows it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "base/errors.h"
#include "mapping/file_table.h"

namespace velk {

/// More cells than this (a quarter of a gigabyte of offsets) are refused as out of memory: a file
/// of a few megabytes can ask for that by one long first line above many short ones.
inline constexpr std::size_t maxCells = std::size_t{1} << 26;

/// More columns than this are refused, too: no list shows them, and each costs an object.
inline constexpr std::size_t maxColumns = 32767;

/// Lines end at each carriage return + line feed pair and nowhere else. The first one holds the
/// titles, quotes and blanks kept; each further one that is not empty is a row. Cells beyond the
/// titles are left out. The text's buffer is rewritten in place and kept by the columns. A field
/// that can't be unquoted is reported and empty. Errors: 9 for an empty text, 7 beyond maxCells or
/// maxColumns.
FileTable readCsvTable(std::string text,
                       const std::function<void(const RuntimeError&)>& unquoteFailed);

}  // namespace velk
