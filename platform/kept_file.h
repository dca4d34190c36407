// A file that grows at its end and that one program at a time writes, for what must outlive the
// program: what was appended stays if the program is killed, and what was synced stays if the power
// fails.
//
// Paths are UTF-8; failures are the runtime errors of files.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velk {

class KeptFile {
 public:
  virtual ~KeptFile() = default;

  /// As it is now.
  virtual std::uint64_t length() const = 0;
  /// Reads up to `count` bytes at `offset`; fewer only at the end.
  virtual std::size_t read(std::uint64_t offset, char* to, std::size_t count) const = 0;
  /// True when somebody else has it open for writing; of no use to who writes it.
  virtual bool isWrittenElsewhere() const = 0;

  /// Adds all of it in one call of the system or throws, or puts it where it outlives the program
  /// without one. After a failure a part may be there; after the end of a program that was killed
  /// zeros may follow, room for what it did not add any more.
  virtual void append(std::string_view bytes) = 0;
  /// Waits until the disk has everything.
  virtual void sync() = 0;
  /// Drops what follows.
  virtual void truncate(std::uint64_t length) = 0;
};

enum class KeptFor {
  Reading,
  Writing,  ///< makes the file and its folder where they are missing, for its user only
};

}  // namespace velk
