// Whole files as bytes.
#pragma once

#include <string>
#include <string_view>

#include "apps/opnimp/cli/failures.h"
#include "base/errors.h"
#include "platform/files.h"

namespace velk {

/// Errors: those of files.h; 7 for a file beyond the length of a text.
std::string readBytes(FileSystem& files, std::string_view path);

/// What a user reads of an error with the file at `path`, without a full stop.
std::string fileErrorText(const std::string& path, const RuntimeError& error);

/// Raises UsageError if there is a file at `path`: what somebody may need is never replaced.
// What is no file cannot be written over, and is refused where it is opened.
void requireNoFile(const std::string& path);

/// Does what writes the file at `path`, `what` being its name in a sentence, such as "the report".
/// Raises CannotOpen if that fails; `named` is where the user chose it, such as "--report".
template <class Action>
void writing(std::string_view what, const std::string& path, std::string_view named,
             Action action) {
  trapErrors(action, [&](const RuntimeError& error) {
    throw CannotOpen(std::string(what) + " " + path +
                     " cannot be written: " + fileErrorText(path, error) + ". Check " +
                     std::string(named) + ", its folder and the space there");
  });
}

/// Replaces the file at `path`, if there is one. Errors: files.h.
void writeFile(FileSystem& files, std::string_view path, std::string_view bytes);

}  // namespace velk
