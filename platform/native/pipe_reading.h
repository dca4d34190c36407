// What other processes say through pipes.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace velk {

enum class PipeEnd { Whole, TooLate, TooLong, Broken };

/// Appends all that comes until the other side has closed the pipe, but not much more than `most`
/// bytes, and not after the limit.
PipeEnd readToEnd(int pipe, std::string& to, std::chrono::milliseconds limit, std::size_t most);

/// All of standard input, whatever it is and however long it takes. Errors: files.h; 52 if it is
/// closed, 7 beyond `most` bytes.
std::string readStandardInput(std::size_t most);

}  // namespace velk
