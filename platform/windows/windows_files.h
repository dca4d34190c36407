// The machine's files, through Win32.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/errors.h"
#include "platform/files.h"
#include "platform/windows/handles.h"

namespace velk {

/// Files are opened shared: others may read and write them. Only files on disk open; a folder, a
/// device or a pipe is error 75. Paths may be longer than 260 characters.
class WindowsFileSystem final : public FileSystem {
 public:
  std::unique_ptr<InputFile> openInput(std::string_view path) override;
  std::unique_ptr<OutputFile> openAppend(std::string_view path) override;
  std::unique_ptr<OutputFile> openReplacement(std::string_view path) override;
  bool openExclusively(std::string_view path) override;
  void remove(std::string_view path) override;
};

/// A file in the same folder as another one, whose place it takes when it is complete.
class FileReplacement {
 public:
  /// Its name has that ending. Error 70, 75 or the like when the file at `path` can't be replaced.
  FileReplacement(std::string_view path, std::string_view ending);
  /// Removes what was not moved.
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  const std::string& path() const { return path_; }
  void moveInPlace();

 private:
  std::string target_;
  std::string path_;
};

/// The full path, which begins with the drive or share.
std::string absolutePath(std::string_view path);

/// Opens a file on disk, shared for reading and writing unless said otherwise. Error 75 for
/// a folder, a device or a pipe, 53 for a name with a NUL in it.
FileHandle openOnDisk(std::string_view path, DWORD access, DWORD disposition,
                      DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE);

/// The count for one call of Windows, which takes 32 bits of it: a bigger file takes several.
DWORD atMostOneCall(std::size_t count);

/// The runtime error for a Win32 error code of a file operation.
RuntimeError fileError(std::uint32_t errorCode);

/// Raises the same for the thread's last error unless a call succeeded.
void requireFileCall(bool succeeded);

}  // namespace velk
