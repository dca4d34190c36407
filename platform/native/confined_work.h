// Work on bytes that nobody trusts, in a process of its own: it can compute and hand bytes back,
// and nothing else. Whatever it does to itself, this process goes on.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace velk {

struct WorkLimits {
  std::size_t memory = 0;          ///< in bytes, on top of what this process has
  std::chrono::seconds computing;  ///< processor time
  std::chrono::seconds waiting;    ///< in all
  std::size_t result = 0;          ///< of the bytes handed back
};

struct WorkResult {
  enum class End { Whole, NoMemory, NoTime, TooLong, Broken };
  End end = End::Broken;
  std::string bytes;  ///< what was handed back until then
};

using HandBack = std::function<void(std::string_view)>;

/// What `work` throws ends it: std::bad_alloc as NoMemory, all else as Broken. It has no file, no
/// network, no other process, and no way to any; what it changes in memory is lost.
WorkResult workConfined(const WorkLimits& limits, const std::function<void(const HandBack&)>& work);

}  // namespace velk
