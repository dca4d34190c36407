// A long file, read once without keeping any of it, so that what it holds is known before memory is
// asked for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/files.h"

namespace velk {

struct FileSurvey {
  std::int64_t nonEmptyLines = 0;
  bool titlesEmpty = true;      ///< the first line is empty
  std::size_t longestLine = 0;  ///< in bytes; beyond maxLineLength nothing further was read
};

/// Lines are those of readCsvTable. Errors: files.h.
FileSurvey surveyFile(FileSystem& files, std::string_view path);

/// Nothing for a file that can be kept for all that its length and its first lines tell.
std::optional<FileSurvey> surveyIfLong(FileSystem& files, std::string_view path);

}  // namespace velk
