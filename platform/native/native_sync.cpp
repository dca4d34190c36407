#include "platform/native/native_sync.h"

#include <fcntl.h>

#include <filesystem>

#include "platform/native/descriptor.h"

namespace velk {

void syncFile(const std::string& path) {
  const Descriptor file(unlessInterrupted(
      [&] { return ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW); }));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  required([&] { return ::fdatasync(file.get()); });
  syncFolderOf(path);
}

void syncFolderOf(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  const Descriptor opened(unlessInterrupted(
      [&] { return ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC); }));
  if (opened) ::fsync(opened.get());
}

}  // namespace velk
