// Another program that has a file open.
#pragma once

#include <string>

#ifdef _WIN32
#include <memory>

#include "platform/windows/windows_files.h"
#else
#include <doctest/doctest.h>
#include <fcntl.h>

#include "platform/native/descriptor.h"
#endif

namespace velk {

/// One who lets nobody else have it alone.
struct OtherUser {
#ifdef _WIN32
  explicit OtherUser(const std::string& path) : file(WindowsFileSystem().openInput(path)) {}
  std::unique_ptr<InputFile> file;
#else
  explicit OtherUser(const std::string& path) : file(::open(path.c_str(), O_RDWR)) {
    struct flock whole {};
    whole.l_type = F_RDLCK;
    REQUIRE(fcntl(file.get(), F_OFD_SETLK, &whole) == 0);
  }
  Descriptor file;
#endif
};

}  // namespace velk
