// The host's command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velk {

struct HostArguments {
  std::optional<std::string> database;
  bool ownAdo = false;
  std::string help;  ///< the text that is asked for; empty if none is
};

/// Error 5, saying what is wrong, for a command line that cannot be understood.
HostArguments readHostArguments(std::vector<std::string> words);

}  // namespace velk
