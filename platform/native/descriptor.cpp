#include "platform/native/descriptor.h"

#include <fcntl.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>

namespace velk {

namespace {

namespace fs = std::filesystem;

// open says ENOENT for a missing file and for a missing folder; the two are different errors here.
bool folderExists(const fs::path& file) {
  std::error_code ignored;
  return !file.has_parent_path() || fs::exists(file.parent_path(), ignored);
}

}  // namespace

Descriptor openDescriptor(std::string_view path, int flags, mode_t mode) {
  if (path.find('\0') != std::string_view::npos) throw RuntimeError(ErrorNumber::FileNotFound);
  const std::string name(path);
  // Without O_NONBLOCK the opening of a pipe would wait for its other end.
  Descriptor file(unlessInterrupted(
      [&] { return ::open(name.c_str(), flags | O_CLOEXEC | O_NONBLOCK, mode); }));
  if (file) return file;
  const int failure = errno;
  if (failure == ENOENT && !folderExists(name)) throw RuntimeError(ErrorNumber::PathNotFound);
  throw fileError(failure);
}

struct stat regularFileStatus(const Descriptor& file) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throw fileError(errno);
  if (!S_ISREG(status.st_mode)) throw RuntimeError(ErrorNumber::PathFileAccess);
  return status;
}

RuntimeError fileError(int errorCode) {
  // ENXIO is what opening gives for a pipe that nobody reads, because of O_NONBLOCK.
  static constexpr std::pair<int, ErrorNumber> known[] = {
      {ENOENT, ErrorNumber::FileNotFound},       {ENOTDIR, ErrorNumber::PathNotFound},
      {EACCES, ErrorNumber::PermissionDenied},   {EPERM, ErrorNumber::PermissionDenied},
      {EBUSY, ErrorNumber::PermissionDenied},    {ETXTBSY, ErrorNumber::PermissionDenied},
      {EISDIR, ErrorNumber::PathFileAccess},     {EROFS, ErrorNumber::PathFileAccess},
      {ELOOP, ErrorNumber::PathFileAccess},      {ENXIO, ErrorNumber::PathFileAccess},
      {EINVAL, ErrorNumber::PathFileAccess},     {ENAMETOOLONG, ErrorNumber::BadFileNameOrNumber},
      {EBADF, ErrorNumber::BadFileNameOrNumber}, {EMFILE, ErrorNumber::TooManyFiles},
      {ENFILE, ErrorNumber::TooManyFiles},       {ENOSPC, ErrorNumber::DiskFull},
      {EDQUOT, ErrorNumber::DiskFull},           {EFBIG, ErrorNumber::DiskFull},
      {ENOMEM, ErrorNumber::OutOfMemory}};
  const auto* const found =
      std::ranges::find(known, errorCode, &std::pair<int, ErrorNumber>::first);
  return RuntimeError(found == std::end(known) ? ErrorNumber::DeviceIo : found->second);
}

}  // namespace velk
