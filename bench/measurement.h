// One measurement: the time of one piece of work in a process of its own, so that the process's
// peak memory is the work's too.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#ifdef _WIN32
#include <windows.h>

#include <psapi.h>
#endif

namespace velk::bench {

#ifdef _WIN32

inline PROCESS_MEMORY_COUNTERS memoryOfProcess() {
  PROCESS_MEMORY_COUNTERS memory{};
  if (K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory) == FALSE) {
    throw std::runtime_error("the memory of the process can't be read");
  }
  return memory;
}

/// The most physical memory that this process has used so far, in kilobytes.
inline long peakMemory() {
  return static_cast<long>(memoryOfProcess().PeakWorkingSetSize / 1024);
}

inline long physicalMemory() {
  return static_cast<long>(memoryOfProcess().WorkingSetSize / 1024);
}

/// The memory that this process shares with no other, in kilobytes. (Wine leaves PrivateUsage 0.)
inline long privateMemory() {
  return static_cast<long>(memoryOfProcess().PagefileUsage / 1024);
}

#else

/// The most physical memory that this process has used so far, in kilobytes.
inline long peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes;
  }
  throw std::runtime_error("the peak memory of the process can't be read");
}

#endif

/// Runs from its construction to stop().
class Stopwatch {
 public:
  void stop() {
    passed_ = Clock::now() - start_;
    processor_ = static_cast<double>(std::clock() - processorStart_) * 1000 / CLOCKS_PER_SEC;
    peakMemory_ = peakMemory();
  }

  /// Prints milliseconds, milliseconds of processor time (on Windows of the clock, again), peak
  /// memory in kilobytes, and how many items the work came to: every side of a comparison has to
  /// arrive at the same number.
  void report(std::size_t items) const {
    std::cout << passed_.count() << ' ' << processor_ << ' ' << peakMemory_ << ' ' << items << '\n';
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now();
  std::clock_t processorStart_ = std::clock();
  std::chrono::duration<double, std::milli> passed_{};
  double processor_ = 0;
  long peakMemory_ = 0;
};

/// Throws unless the condition holds.
inline void require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

/// The body of a measurement's main: an error is told, and fails the process.
template <class Work>
int runMeasurement(Work&& work) {
  try {
    work();
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
  }
}

}  // namespace velk::bench
