// A command line as the machine splits it into words.
#pragma once

#include <string>
#include <vector>

namespace velk {

std::vector<std::string> shellWords(const std::string& command);

}  // namespace velk
