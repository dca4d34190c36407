#include "platform/native/confined_work.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <new>

#include "base/sanitized.h"
#include "platform/native/descriptor.h"
#include "platform/native/pipe_reading.h"
#include "platform/native/system_filter.h"

namespace velk {

namespace {

// The sanitizers have memory beyond every limit and pipes of their own, and take their time.
constexpr bool limitsAll = !isSanitized;
constexpr int slowness = isSanitized ? 10 : 1;

// What the child ends with.
constexpr int endedWhole = 0;
constexpr int endedWithoutMemory = 2;
constexpr int endedBroken = 3;

/// Nobody may raise a limit that was set before.
void setLimit(__rlimit_resource resource, rlim_t most) {
  rlimit both{};
  if (::getrlimit(resource, &both) != 0) ::_exit(endedBroken);
  both.rlim_max = std::min(both.rlim_max, most);
  both.rlim_cur = both.rlim_max;
  if (::setrlimit(resource, &both) != 0) ::_exit(endedBroken);
}

/// The address space of this process, in bytes.
std::size_t spaceInUse() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

/// Leaves the child nothing but the pipe.
void confine(const WorkLimits& limits, std::size_t space, int pipe) {
  // A crash is foreseen: no picture of this process's memory is to be left on a disk.
  setLimit(RLIMIT_CORE, 0);
  // The child must not outlive its parent, nor be looked into.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  setLimit(RLIMIT_CPU, static_cast<rlim_t>(limits.computing.count() * slowness));
  // The pipe takes the place of standard input; nothing else stays open.
  ::dup2(pipe, STDIN_FILENO);
  if (::syscall(SYS_close_range, 1U, ~0U, 0U) != 0) ::_exit(endedBroken);
  setLimit(RLIMIT_FSIZE, 0);
  if (!limitsAll) return;
  setLimit(RLIMIT_AS, space + limits.memory);
  setLimit(RLIMIT_NOFILE, 0);
  allowComputingOnly();
}

void writeAll(int pipe, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        unlessInterrupted([&] { return ::write(pipe, bytes.data(), bytes.size()); });
    if (written < 0) ::_exit(endedBroken);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

/// In the child: never returns.
[[noreturn]] void doWork(const WorkLimits& limits, std::size_t space, int pipe,
                         const std::function<void(const HandBack&)>& work) {
  int status = endedWhole;
  try {
    confine(limits, space, pipe);
    work([](std::string_view bytes) { writeAll(STDIN_FILENO, bytes); });
  } catch (const std::bad_alloc&) {
    status = endedWithoutMemory;
  } catch (...) {
    status = endedBroken;
  }
  // Without the ends that this process's own objects have.
  ::_exit(status);
}

WorkResult readResult(int pipe, const WorkLimits& limits) {
  WorkResult result;
  switch (readToEnd(pipe, result.bytes, limits.waiting * slowness, limits.result)) {
    case PipeEnd::Whole:
      result.end = WorkResult::End::Whole;
      break;
    case PipeEnd::TooLate:
      result.end = WorkResult::End::NoTime;
      break;
    case PipeEnd::TooLong:
      result.end = WorkResult::End::TooLong;
      break;
    case PipeEnd::Broken:
      break;
  }
  return result;
}

WorkResult::End endOf(int status) {
  const bool outOfTime =
      WIFSIGNALED(status) && (WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGKILL);
  if (outOfTime) return WorkResult::End::NoTime;
  if (!WIFEXITED(status)) return WorkResult::End::Broken;
  if (WEXITSTATUS(status) == endedWithoutMemory) return WorkResult::End::NoMemory;
  return WEXITSTATUS(status) == endedWhole ? WorkResult::End::Whole : WorkResult::End::Broken;
}

}  // namespace

WorkResult workConfined(const WorkLimits& limits,
                        const std::function<void(const HandBack&)>& work) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw fileError(errno);
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const std::size_t space = spaceInUse();
  const pid_t child = ::fork();
  if (child < 0) throw fileError(errno);
  if (child == 0) doWork(limits, space, writing.get(), work);
  writing = Descriptor();
  WorkResult result = readResult(reading.get(), limits);
  // It has nothing more to say.
  if (result.end != WorkResult::End::Whole) ::kill(child, SIGKILL);
  int status = 0;
  unlessInterrupted([&] { return ::waitpid(child, &status, 0); });
  if (result.end == WorkResult::End::Whole) result.end = endOf(status);
  return result;
}

}  // namespace velk
