// Room at the end of a file that is written as memory: no call of the system for each of many short
// pieces, and what was put there stays in the file if the program is killed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/native/descriptor.h"

namespace velk {

class MappedRoom {
 public:
  MappedRoom() = default;
  ~MappedRoom() { leave(); }
  MappedRoom(const MappedRoom&) = delete;
  MappedRoom& operator=(const MappedRoom&) = delete;

  /// Puts the bytes at `offset`, the file's end or where the last ones ended. False where that
  /// cannot be had: for long pieces, and where the file system does not promise room (a page that
  /// finds no room on the disk would end the program).
  bool put(const Descriptor& file, std::uint64_t offset, std::string_view bytes);
  /// Gives the memory back. The file keeps its length, zeros behind what was put.
  void leave();

 private:
  bool makeRoom(const Descriptor& file, std::uint64_t offset);

  char* memory_ = nullptr;
  std::uint64_t start_ = 0;  // of the memory in the file
  bool refused_ = false;     // by the file system, once and for all
};

}  // namespace velk
