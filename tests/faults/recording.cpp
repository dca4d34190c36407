#include "tests/faults/recording.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace recording {

namespace {

using Path = std::array<char, PATH_MAX>;

int output() {
  static const int file = [] {
    const char* const name = std::getenv("FAULT_RECORD");
    if (name == nullptr) return -1;
    return static_cast<int>(
        ::syscall(SYS_openat, AT_FDCWD, name, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
  }();
  return file;
}

/// The part of a path below the folder; nothing for other paths, and the memory that programs
/// share.
const char* below(const char* path) {
  const char* const folder = std::getenv("FAULT_FOLDER");
  const std::size_t length = folder == nullptr ? 0 : std::strlen(folder);
  const bool isOurs = length > 0 && std::strncmp(path, folder, length - 1) == 0 &&
                      std::strstr(path, "-shm") == nullptr;
  if (!isOurs || output() < 0) return nullptr;
  return std::strlen(path) < length ? "" : path + length;  // the folder itself has no '/' behind it
}

long told = 0;

template <class... Parts>
void line(const char* format, Parts... parts) {
  std::array<char, 2 * PATH_MAX> text{};
  const int length = std::snprintf(text.data(), text.size(), format, parts...);
  ::syscall(SYS_write, output(), text.data(), static_cast<std::size_t>(length));
  ++told;
}

void writeLine(const char* path, const char* bytes, std::size_t count, off_t at) {
  line("write %ld %zu %s\n", static_cast<long>(at), count, path);
  ::syscall(SYS_write, output(), bytes, count);
}

/// One piece of a file that is written as memory, and what was seen of it.
struct Map {
  const char* memory = nullptr;
  std::size_t length = 0;
  off_t at = 0;
  Path path{};
  std::array<char, std::size_t{256} << 10> seen{};
};
Map map;

void lookAtMap() {
  if (map.memory == nullptr) return;
  constexpr std::size_t block = 8;  // no finer: entries are not told from each other
  std::size_t first = 0;
  while (first < map.length && std::memcmp(&map.seen[first], map.memory + first, block) == 0)
    first += block;
  std::size_t last = map.length;
  while (last > first &&
         std::memcmp(&map.seen[last - block], map.memory + last - block, block) == 0)
    last -= block;
  if (first == last) return;
  std::memcpy(&map.seen[first], map.memory + first, last - first);
  writeLine(map.path.data(), &map.seen[first], last - first, map.at + static_cast<off_t>(first));
}

/// Tells of a change, behind those that nobody told of.
template <class Tell>
void tell(const char* path, Tell tellOf) {
  const char* const name = below(path);
  if (name == nullptr) return;
  const int error = errno;
  lookAtMap();
  tellOf(name);
  errno = error;
}

template <class Tell>
void tell(int file, Tell tellOf) {
  if (output() < 0) return;
  Path path{};
  pathOf(file, path.data(), path.size());
  tell(path.data(), tellOf);
}

}  // namespace

void pathOf(int file, char* path, std::size_t size) {
  std::array<char, 32> link{};
  std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
  const int error = errno;
  const ssize_t length = ::readlink(link.data(), path, size - 1);
  errno = error;
  path[std::max<ssize_t>(length, 0)] = 0;
}

long changes() {
  return told;
}

void made(const char* path) {
  tell(path, [](const char* name) { line("make %s\n", name); });
}

void folderMade(const char* path) {
  tell(path, [](const char* name) { line("make %s/\n", name); });
}

void lengthChanged(int file) {
  tell(file, [file](const char* name) {
    struct stat status {};
    ::fstat(file, &status);
    line("length %ld %s\n", static_cast<long>(status.st_size), name);
  });
}

void written(int file, const void* bytes, std::size_t count, off_t at) {
  tell(file, [&](const char* name) {
    const off_t place = at >= 0 ? at : ::lseek(file, 0, SEEK_CUR) - static_cast<off_t>(count);
    writeLine(name, static_cast<const char*>(bytes), count, place);
  });
}

void synced(int file) {
  tell(file, [](const char* name) { line("sync %s\n", name); });
}

void renamed(const char* from, const char* to) {
  tell(from, [to](const char* name) { line("rename %s %s\n", name, below(to)); });
}

void linked(const char* from, const char* to) {
  tell(from, [to](const char* name) { line("link %s %s\n", name, below(to)); });
}

void removed(const char* path) {
  tell(path, [](const char* name) { line("remove %s\n", name); });
}

void mapped(int file, void* memory, std::size_t length, off_t at) {
  tell(file, [&](const char*) {
    if (length > map.seen.size()) std::abort();
    map.memory = static_cast<const char*>(memory);
    map.length = length;
    map.at = at;
    pathOf(file, map.path.data(), map.path.size());
    const char* const name = below(map.path.data());
    std::memmove(map.path.data(), name, std::strlen(name) + 1);
    std::memcpy(map.seen.data(), memory, length);
  });
}

void unmapping(const void* memory) {
  if (memory != map.memory || memory == nullptr) return;
  lookAtMap();
  map.memory = nullptr;
}

}  // namespace recording
