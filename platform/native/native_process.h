// A program that answers a question.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace velk {

struct Answer {
  int status = 0;      ///< that it ended with
  std::string output;  ///< to standard output
};

/// Runs a program with its arguments, `variable` ("NAME=value") being set in its environment, and
/// nothing to read; what it writes to standard error is dropped. It is ended when it takes longer.
/// Empty if it did not answer in time, or not at all.
std::optional<Answer> answerOf(const std::vector<std::string>& command, const std::string& variable,
                               std::chrono::milliseconds limit);

}  // namespace velk
