// Whole files as bytes.
#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"

namespace velk {

/// Errors: those of files.h; 7 for a file beyond the length of a text.
std::string readBytes(FileSystem& files, std::string_view path);

/// Replaces the file at `path`, if there is one. Errors: files.h.
void writeFile(FileSystem& files, std::string_view path, std::string_view bytes);

}  // namespace velk
