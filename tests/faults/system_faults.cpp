// Loaded before the C library (LD_PRELOAD): calls of the system that fail as full disks, quotas,
// rights, broken devices and missing memory make them fail.
//
//   FAULT_CALLS   what is counted: "files", "new" or "malloc"
//   FAULT_FOLDER  of files only those below it, ...
//   FAULT_BUT     ... and none whose path holds this
//   FAULT_AT      which call fails, from 1 on; 0 or nothing: none
//   FAULT_HOW     "once"; "ever": and all that follow; "short": a write takes half, and the rest
//                 goes on; "torn": a write takes half, and all that follow fail
//   FAULT_ERROR   the number of the error
//   FAULT_TRACE   a file that gets a line for each call on a file, one for the module in which the
//                 program crashed, and in the end one with the number of calls
//
//   FAULT_MEMORY  megabytes that the program may take beyond what it has when it begins
//   FAULT_CLOCK   milliseconds that pass with each change of a file that is written down
//                 (recording.h)
//
// Nothing here allocates: memory is among what fails.
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

#include "tests/faults/recording.h"

namespace {

using Path = std::array<char, PATH_MAX>;

const char* setting(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool isSet(const char* name, const char* to) {
  return std::strcmp(setting(name), to) == 0;
}

void append(int file, const char* text) {
  ::syscall(SYS_write, file, text, std::strlen(text));
}

/// A line of the trace: "call path".
void trace(const char* call, const char* path) {
  const char* const name = setting("FAULT_TRACE");
  if (*name == 0) return;
  const auto file = static_cast<int>(
      ::syscall(SYS_openat, AT_FDCWD, name, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
  for (const char* part : {call, " ", path, "\n"}) append(file, part);
  ::syscall(SYS_close, file);
}

bool isCounted(const char* path) {
  const char* const folder = setting("FAULT_FOLDER");
  const char* const but = setting("FAULT_BUT");
  return isSet("FAULT_CALLS", "files") && std::strncmp(path, folder, std::strlen(folder)) == 0 &&
         (*but == 0 || std::strstr(path, but) == nullptr);
}

std::atomic<long> calls{0};

/// Whether the call that is counted now is to fail.
bool isDue() {
  const long call = ++calls;
  const long at = std::atol(setting("FAULT_AT"));
  const bool goesOn = isSet("FAULT_HOW", "ever") || isSet("FAULT_HOW", "torn");
  return at > 0 && (call == at || (goesOn && call > at));
}

/// Counts a call on a file, and sets errno if it is to fail.
bool fails(const char* call, const char* path) {
  if (!isCounted(path)) return false;
  trace(call, path);
  const bool due = isDue();
  if (due) errno = std::atoi(setting("FAULT_ERROR"));
  return due && (std::strcmp(call, "write") == 0 || !isSet("FAULT_HOW", "short"));
}

bool fails(const char* call, int descriptor) {
  Path path{};
  recording::pathOf(descriptor, path.data(), path.size());
  return path.front() != 0 && fails(call, path.data());
}

int opened(const char* path, int flags, mode_t mode) {
  Path full{};
  if (*path != '/' && ::getcwd(full.data(), full.size() / 2) != nullptr)
    std::strcat(full.data(), "/");
  std::strncat(full.data(), path, full.size() / 2 - 1);
  if (fails((flags & O_ACCMODE) == O_RDONLY ? "read-open" : "open", full.data())) return -1;
  const bool isNew = (flags & O_CREAT) != 0 && ::access(path, F_OK) != 0;
  const auto file = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  if (file >= 0 && (isNew || (flags & O_TRUNC) != 0)) recording::made(full.data());
  return file;
}

/// How much of a write is to be done, less than nothing for none.
ssize_t writable(int file, std::size_t count) {
  static std::atomic<bool> wasHalf{false};
  const bool due = fails("write", file);
  const bool half = isSet("FAULT_HOW", "short") || isSet("FAULT_HOW", "torn");
  if (due && half && !wasHalf.exchange(true) && count > 1) return static_cast<ssize_t>(count / 2);
  return due && !isSet("FAULT_HOW", "short") ? -1 : static_cast<ssize_t>(count);
}

bool isOfLanguage(const char* module) {
  for (const char* own : {"libc.", "libstdc++", "libgcc", "libopnimp_system"}) {
    if (std::strncmp(module, own, std::strlen(own)) == 0) return true;
  }
  return false;
}

/// Tells where the program was: the first module that is no part of the language's own, the place
/// in it, and what it had called of those: "crash opnimp 1f2e strlen".
void onCrash(int signalNumber) {
  std::array<void*, 64> frames{};
  const int count = ::backtrace(frames.data(), frames.size());
  const char* called = "";
  for (int i = 1; i < count; ++i) {
    // A call that never comes back may be the last of its function.
    const char* const at = static_cast<char*>(frames.at(static_cast<std::size_t>(i))) - 1;
    Dl_info module{};
    if (::dladdr(at, &module) == 0) continue;
    const char* const name = std::strrchr(module.dli_fname, '/');
    const char* const shown = name == nullptr ? module.dli_fname : name + 1;
    if (isOfLanguage(shown)) {
      called = module.dli_sname == nullptr ? "" : module.dli_sname;
      continue;
    }
    std::array<char, 256> text{};
    std::snprintf(text.data(), text.size(), "%s %tx %s", shown,
                  at - static_cast<char*>(module.dli_fbase), called);
    trace("crash", text.data());
    break;
  }
  std::signal(signalNumber, SIG_DFL);
  std::raise(signalNumber);
}

void limitMemory() {
  std::array<char, 64> sizes{};
  const auto file =
      static_cast<int>(::syscall(SYS_openat, AT_FDCWD, "/proc/self/statm", O_RDONLY, 0));
  ::syscall(SYS_read, file, sizes.data(), sizes.size() - 1);
  ::syscall(SYS_close, file);
  const rlim_t begun =
      std::strtoul(sizes.data(), nullptr, 10) * static_cast<rlim_t>(::getpagesize());
  const rlim_t limit = begun + (std::strtoul(setting("FAULT_MEMORY"), nullptr, 10) << 20);
  const rlimit both{limit, limit};
  ::setrlimit(RLIMIT_AS, &both);
}

/// Loads what a handler needs while there is memory.
[[gnu::constructor]] void prepare() {
  std::array<void*, 1> frame{};
  ::backtrace(frame.data(), frame.size());
  if (!isSet("FAULT_MEMORY", "")) limitMemory();
  if (isSet("FAULT_CALLS", "")) return;
  for (const int crash : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE}) std::signal(crash, onCrash);
}

[[gnu::destructor]] void tellCalls() {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%ld", calls.load());
  if (!isSet("FAULT_CALLS", "")) trace("calls", text.data());
}

bool memoryFails(const char* kind) {
  return isSet("FAULT_CALLS", kind) && isDue();
}

}  // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size) {
  if (!memoryFails("malloc")) return __libc_malloc(size);
  errno = ENOMEM;
  return nullptr;
}
void* calloc(std::size_t count, std::size_t size) {
  if (!memoryFails("malloc")) return __libc_calloc(count, size);
  errno = ENOMEM;
  return nullptr;
}
void* realloc(void* memory, std::size_t size) {
  if (!memoryFails("malloc")) return __libc_realloc(memory, size);
  errno = ENOMEM;
  return nullptr;
}

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return opened(path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));

ssize_t write(int file, const void* from, std::size_t count) {
  const ssize_t taken = writable(file, count);
  const ssize_t done = taken < 0 ? -1 : ::syscall(SYS_write, file, from, taken);
  if (done > 0) recording::written(file, from, static_cast<std::size_t>(done), -1);
  return done;
}
ssize_t pwrite(int file, const void* from, std::size_t count, off_t at) {
  const ssize_t taken = writable(file, count);
  const ssize_t done = taken < 0 ? -1 : ::syscall(SYS_pwrite64, file, from, taken, at);
  if (done > 0) recording::written(file, from, static_cast<std::size_t>(done), at);
  return done;
}
ssize_t pwrite64(int file, const void* from, std::size_t count, off_t at)
    __attribute__((alias("pwrite")));
// Of zeros only, where a file has them already.
ssize_t pwritev(int file, const iovec* pieces, int count, off_t at) {
  return fails("write", file) ? -1 : ::syscall(SYS_pwritev, file, pieces, count, at, 0);
}
ssize_t pwritev64(int file, const iovec* pieces, int count, off_t at)
    __attribute__((alias("pwritev")));

// No disk is waited for: the tests would last as long again, and a crash of the machine is not
// theirs.
int fsync(int file) {
  if (fails("fsync", file)) return -1;
  recording::synced(file);
  return 0;
}
int fdatasync(int file) __attribute__((alias("fsync")));

int ftruncate(int file, off_t length) noexcept {
  const bool done = !fails("truncate", file) && ::syscall(SYS_ftruncate, file, length) == 0;
  if (done) recording::lengthChanged(file);
  return done ? 0 : -1;
}
int ftruncate64(int file, off_t length) noexcept __attribute__((alias("ftruncate")));

int fallocate(int file, int mode, off_t at, off_t length) {
  const bool done =
      !fails("allocate", file) && ::syscall(SYS_fallocate, file, mode, at, length) == 0;
  if (done) recording::lengthChanged(file);
  return done ? 0 : -1;
}
int fallocate64(int file, int mode, off_t at, off_t length) __attribute__((alias("fallocate")));

// A descriptor is gone even if closing it reports an error.
int close(int file) {
  const bool failed = fails("close", file);
  const int error = errno;
  const auto closed = static_cast<int>(::syscall(SYS_close, file));
  if (!failed) return closed;
  errno = error;
  return -1;
}

int rename(const char* from, const char* to) noexcept {
  const bool done = !fails("rename", to) && ::syscall(SYS_rename, from, to) == 0;
  if (done) recording::renamed(from, to);
  return done ? 0 : -1;
}
int unlink(const char* path) noexcept {
  const auto done = static_cast<int>(::syscall(SYS_unlink, path));
  if (done == 0) recording::removed(path);
  return done;
}
int remove(const char* path) noexcept {
  const int done = ::unlink(path);
  return done != 0 && errno == EISDIR ? ::rmdir(path) : done;
}
int link(const char* from, const char* to) noexcept {
  const auto done = static_cast<int>(::syscall(SYS_link, from, to));
  if (done == 0) recording::linked(from, to);
  return done;
}
int mkdir(const char* path, mode_t mode) noexcept {
  const auto done = static_cast<int>(::syscall(SYS_mkdir, path, mode));
  if (done == 0) recording::folderMade(path);
  return done;
}

void* mmap(void* wish, std::size_t length, int protection, int flags, int file, off_t at) noexcept {
  void* const memory =
      reinterpret_cast<void*>(::syscall(SYS_mmap, wish, length, protection, flags, file, at));
  const bool isWritten = (protection & PROT_WRITE) != 0 && (flags & MAP_SHARED) != 0;
  if (memory != MAP_FAILED && isWritten && file >= 0) recording::mapped(file, memory, length, at);
  return memory;
}
void* mmap64(void* wish, std::size_t length, int protection, int flags, int file, off_t at) noexcept
    __attribute__((alias("mmap")));
int munmap(void* memory, std::size_t length) noexcept {
  recording::unmapping(memory);
  return static_cast<int>(::syscall(SYS_munmap, memory, length));
}

int clock_gettime(clockid_t clock, struct timespec* time) noexcept {
  const auto done = static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
  const long passed = recording::changes() * std::atol(setting("FAULT_CLOCK"));
  if (clock == CLOCK_MONOTONIC) time->tv_sec += passed / 1000;
  return done;
}

}  // extern "C"

void* operator new(std::size_t size) {
  for (;;) {
    void* const memory = memoryFails("new") ? nullptr : __libc_malloc(size);
    if (memory != nullptr) return memory;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
