#include "platform/native/mapped_room.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <vector>

namespace velk {

namespace {

// As much as a thousand records or more take, and a multiple of every size of a page.
constexpr std::size_t roomSize = std::size_t{256} << 10;
constexpr std::size_t longest = roomSize / 4;
constexpr std::uint64_t pageSize = std::uint64_t{64} << 10;

/// The file has the pages in memory then, made by one call: a fault for each as it is first written
/// to costs five times as much.
bool writeZeros(const Descriptor& file, std::uint64_t offset, std::uint64_t count) {
  static constexpr std::array<char, std::size_t{4} << 10> zeros{};
  std::vector<iovec> pieces;
  for (std::uint64_t left = count; left > 0; left -= pieces.back().iov_len) {
    pieces.push_back(
        {const_cast<char*>(zeros.data()), std::min<std::uint64_t>(left, zeros.size())});
  }
  return ::pwritev(file.get(), pieces.data(), static_cast<int>(pieces.size()),
                   static_cast<off_t>(offset)) == static_cast<ssize_t>(count);
}

}  // namespace

bool MappedRoom::put(const Descriptor& file, std::uint64_t offset, std::string_view bytes) {
  if (refused_ || bytes.size() > longest) return false;
  const bool within = memory_ != nullptr && offset >= start_ && offset - start_ <= roomSize &&
                      bytes.size() <= roomSize - (offset - start_);
  if (!within && !makeRoom(file, offset)) return false;
  std::memcpy(memory_ + (offset - start_), bytes.data(), bytes.size());
  return true;
}

bool MappedRoom::makeRoom(const Descriptor& file, std::uint64_t offset) {
  leave();
  const std::uint64_t start = offset - offset % pageSize;
  if (::fallocate(file.get(), 0, static_cast<off_t>(start), roomSize) != 0) {
    refused_ = errno != EINTR && errno != ENOSPC;
    return false;
  }
  if (!writeZeros(file, offset, start + roomSize - offset)) return false;
  void* const memory = ::mmap(nullptr, roomSize, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(),
                              static_cast<off_t>(start));
  if (memory == MAP_FAILED) return false;
#ifdef MADV_POPULATE_WRITE
  ::madvise(memory, roomSize, MADV_POPULATE_WRITE);  // a page's first write is cheaper then
#endif
  memory_ = static_cast<char*>(memory);
  start_ = start;
  return true;
}

void MappedRoom::leave() {
  if (memory_ != nullptr) ::munmap(memory_, roomSize);
  memory_ = nullptr;
}

}  // namespace velk
