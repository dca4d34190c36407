// Opens an import file in the format of its kind.
#pragma once

#include <memory>
#include <string_view>

#include "apps/opnimp/records/input_records.h"

namespace velk {

/// Reads the whole file. Errors: those of files.h; 7 for one that is too long to be read. A file of
/// another format is read, as one that is refused.
std::unique_ptr<const InputRecords> readRecords(FileSystem& files, std::string_view path,
                                                FileFormat format);

}  // namespace velk
