// What another process says through a pipe.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace velk {

enum class PipeEnd { Whole, TooLate, TooLong, Broken };

/// Appends all that comes until the other side has closed the pipe, but not much more than `most`
/// bytes, and not after the limit.
PipeEnd readToEnd(int pipe, std::string& to, std::chrono::milliseconds limit, std::size_t most);

}  // namespace velk
