// The machine's files, as bytes.
//
// Paths are UTF-8. Every failure is a RuntimeError: 53 file not found, 76 path not found, 70
// permission denied (also a locked file), 75 path/file access error (a folder, a device), 67 too
// many files, 61 disk full, 57 any other device error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace velk {

/// Separates a folder from a name in the paths that the system forms and shows.
#ifdef _WIN32
inline constexpr char pathSeparator = '\\';
#else
inline constexpr char pathSeparator = '/';
#endif

class InputFile {
 public:
  virtual ~InputFile() = default;
  /// Length in bytes when opened.
  virtual std::uint64_t length() const = 0;
  /// Reads up to `count` bytes to `to`; fewer only at the end, 0 at the end.
  virtual std::size_t read(char* to, std::size_t count) = 0;
  /// The next reading begins there; not behind the end.
  virtual void seek(std::uint64_t offset) = 0;
};

class OutputFile {
 public:
  virtual ~OutputFile() = default;
  /// Writes all of it or throws. What was written before the failure may be on disk.
  virtual void write(std::string_view bytes) = 0;
  /// Closes; a failure that shows only now is thrown. The destructor closes silently.
  virtual void close() = 0;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;
  virtual std::unique_ptr<InputFile> openInput(std::string_view path) = 0;
  /// Opens for adding at the end, creating the file where there is none.
  virtual std::unique_ptr<OutputFile> openAppend(std::string_view path) = 0;
  /// A new file that takes the place of the one at `path`, if there is one, when it is closed.
  /// Until then it is beside it under another name; a file that is never closed, or whose
  /// close() fails, goes without a trace.
  virtual std::unique_ptr<OutputFile> openReplacement(std::string_view path) = 0;
  /// Opens a file for reading and writing, locked against everybody else, and closes it at once:
  /// error 70 when another program holds it. Where there is no file an empty one is made; true
  /// says so.
  virtual bool openExclusively(std::string_view path) = 0;
  virtual void remove(std::string_view path) = 0;
};

}  // namespace velk
