// Whole files as bytes.
#pragma once

#include <string>
#include <string_view>

#include "base/errors.h"
#include "platform/files.h"

namespace velk {

/// Errors: those of files.h; 7 for a file beyond the length of a text.
std::string readBytes(FileSystem& files, std::string_view path);

/// What a user reads of an error with the file at `path`, without a full stop.
std::string fileErrorText(const std::string& path, const RuntimeError& error);

/// Replaces the file at `path`, if there is one. Errors: files.h.
void writeFile(FileSystem& files, std::string_view path, std::string_view bytes);

}  // namespace velk
