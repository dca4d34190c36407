// Measures any program as a whole, with the processes that it starts, of which the largest counts
// as memory. Its items are the number that it prints last, or else its exit status; 0 and 1 are
// successes.
//
//   bench_whole PROGRAM ARGUMENTS...

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>
#include <string>

#include "bench/measurement.h"

using namespace velk::bench;

namespace {

/// What the program prints last, at most.
std::string printedBy(int output) {
  constexpr std::size_t kept = 64;
  std::string text;
  std::array<char, 4096> part;
  for (ssize_t size = 0; (size = read(output, part.data(), part.size())) > 0;) {
    text.append(part.data(), static_cast<std::size_t>(size));
    if (text.size() > kept) text.erase(0, text.size() - kept);
  }
  return text.substr(std::min(text.size(), text.find_last_of('\n', text.size() - 2) + 1));
}

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

void measure(char** command) {
  std::array<int, 2> ends{};
  require(pipe(ends.data()) == 0, "there is no pipe");
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  require(child >= 0, "the program can't be started");
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    execvp(command[0], command);
    _exit(127);
  }
  close(ends[1]);
  const std::string printed = printedBy(ends[0]);
  int status = 0;
  rusage used{};
  require(wait4(child, &status, 0, &used) == child, "the program is not to be waited for");
  const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;
  require(WIFEXITED(status) && WEXITSTATUS(status) < 2, "the program failed");
  const bool isNumber =
      !printed.empty() && printed.find_first_not_of("0123456789\n") == std::string::npos;
  std::cout << passed.count() << ' ' << milliseconds(used.ru_utime) + milliseconds(used.ru_stime)
            << ' ' << used.ru_maxrss << ' ' << (isNumber ? std::stol(printed) : WEXITSTATUS(status))
            << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc >= 2, "usage: bench_whole PROGRAM ARGUMENTS...");
    measure(argv + 1);
  });
}
