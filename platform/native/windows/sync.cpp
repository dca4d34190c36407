#include "platform/native/native_sync.h"

#include "base/errors.h"
#include "platform/windows/windows_files.h"

namespace velk {

// A file that somebody has opened for himself alone is left to him.
void syncFile(const std::string& path) {
  constexpr DWORD anySharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  FileHandle file;
  const bool opened =
      trapErrors([&] { file = openOnDisk(path, GENERIC_WRITE, OPEN_EXISTING, anySharing); },
                 [](const RuntimeError&) {});
  if (opened) requireFileCall(FlushFileBuffers(file.get()));
}

// Windows writes the names with the file.
void syncFolderOf(const std::string& /*path*/) {}

}  // namespace velk
