// Writes a compound file with one stream.
#pragma once

#include <string_view>

#include "platform/files.h"

namespace velk::xls {

/// The stream is named "Workbook". Short streams go where such files keep them: into mini sectors.
void writeCompoundFile(OutputFile& to, std::string_view stream);

}  // namespace velk::xls
