#include "apps/opnimp/records/file_bytes.h"

#include <filesystem>
#include <system_error>

#include "platform/utf8_path.h"
#include "shared/numbered_files.h"

namespace velk {

std::string readBytes(FileSystem& files, std::string_view path) {
  const auto file = files.openInput(path);
  // The limit of the module's own reading, so that both take the same files.
  if (file->length() > maxTextLength) throw RuntimeError(ErrorNumber::OutOfMemory);
  std::string bytes(static_cast<std::size_t>(file->length()), '\0');
  // The file may have become shorter since it was opened.
  bytes.resize(file->read(bytes.data(), bytes.size()));
  return bytes;
}

std::string fileErrorText(const std::string& path, const RuntimeError& error) {
  namespace fs = std::filesystem;
  const fs::path native = toPath(path);
  std::error_code unknown;
  const fs::file_status status = fs::status(native, unknown);
  if (fs::is_directory(status)) return "it is a folder";
  if (!error.is(ErrorNumber::PathFileAccess)) return error.description();
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    return "it is no file but a pipe, a socket or a device";
  }
  if (fs::is_symlink(fs::symlink_status(native, unknown))) {
    return "it is a symbolic link, through which nothing is written";
  }
  return error.description();
}

void requireNoFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(toPath(path), error)) return;
  throw UsageError("there is a file " + path +
                   " already, and it is never replaced; move it first, or choose another name");
}

void writeFile(FileSystem& files, std::string_view path, std::string_view bytes) {
  const auto file = files.openReplacement(path);
  file->write(bytes);
  // Only this puts the new file in the place of the old one.
  file->close();
}

}  // namespace velk
