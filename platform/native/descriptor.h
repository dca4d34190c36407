// File descriptors that are given back at their owner's end.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "base/unique_handle.h"

namespace velk {

struct DescriptorKind {
  using Handle = int;
  static Handle none() { return -1; }  // what open gives when it fails
  static void close(Handle descriptor) { ::close(descriptor); }
};
using Descriptor = UniqueHandle<DescriptorKind>;

inline constexpr mode_t newFileMode = 0666;  // the user's umask takes away from this

/// Errors: files.h.
Descriptor openDescriptor(std::string_view path, int flags, mode_t mode = newFileMode);

/// Error 75 for what is no regular file.
struct stat regularFileStatus(const Descriptor& file);

}  // namespace velk
