// File descriptors that are given back at their owner's end, and calls of the system on them.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "base/errors.h"
#include "base/unique_handle.h"

namespace velk {

struct DescriptorKind {
  using Handle = int;
  static Handle none() { return -1; }  // what open gives when it fails
  static void close(Handle descriptor) { ::close(descriptor); }
};
using Descriptor = UniqueHandle<DescriptorKind>;

inline constexpr mode_t newFileMode = 0666;  // the user's umask takes away from this

/// The runtime error for an errno of a file operation.
RuntimeError fileError(int errorCode);

/// Answers the result of a call of the system, which is made again when a signal came between.
template <class Call>
auto unlessInterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// The same, with the error for one that fails.
template <class Call>
auto required(Call call) {
  const auto result = unlessInterrupted(call);
  if (result < 0) throw fileError(errno);
  return result;
}

/// Errors: files.h.
Descriptor openDescriptor(std::string_view path, int flags, mode_t mode = newFileMode);

/// Error 75 for what is no regular file.
struct stat regularFileStatus(const Descriptor& file);

}  // namespace velk
