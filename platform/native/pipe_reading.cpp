#include "platform/native/pipe_reading.h"

#include <poll.h>

#include <array>
#include <cerrno>

#include "platform/native/descriptor.h"

namespace velk {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t blockSize = std::size_t{1} << 16U;

/// Without one that is ready a read might wait for ever. 0: it is not in time.
int waitUntilReady(int pipe, Clock::time_point end) {
  return unlessInterrupted([&] {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    pollfd wanted{pipe, POLLIN, 0};
    return left.count() <= 0 ? 0 : ::poll(&wanted, 1, static_cast<int>(left.count()));
  });
}

/// Whoever has the other end may have made it one whose reading does not wait.
std::size_t readWaiting(int descriptor, char* to, std::size_t count) {
  while (true) {
    const ssize_t read = unlessInterrupted([&] { return ::read(descriptor, to, count); });
    if (read >= 0) return static_cast<std::size_t>(read);
    if (errno != EAGAIN) throw fileError(errno);
    constexpr int forEver = -1;
    pollfd wanted{descriptor, POLLIN, 0};
    required([&] { return ::poll(&wanted, 1, forEver); });
  }
}

}  // namespace

std::string readStandardInput(std::size_t most) {
  std::string bytes;
  std::array<char, blockSize> room{};
  while (const std::size_t count = readWaiting(STDIN_FILENO, room.data(), room.size())) {
    bytes.append(room.data(), count);
    if (bytes.size() > most) throw RuntimeError(ErrorNumber::OutOfMemory);
  }
  return bytes;
}

PipeEnd readToEnd(int pipe, std::string& to, std::chrono::milliseconds limit, std::size_t most) {
  const Clock::time_point end = Clock::now() + limit;
  std::array<char, blockSize> room{};
  while (to.size() <= most) {
    const int ready = waitUntilReady(pipe, end);
    if (ready <= 0) return ready == 0 ? PipeEnd::TooLate : PipeEnd::Broken;
    const ssize_t count = unlessInterrupted([&] { return ::read(pipe, room.data(), room.size()); });
    if (count <= 0) return count == 0 ? PipeEnd::Whole : PipeEnd::Broken;
    to.append(room.data(), static_cast<std::size_t>(count));
  }
  return PipeEnd::TooLong;
}

}  // namespace velk
