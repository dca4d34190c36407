// Who has locked a file.
#pragma once

#include <string>
#include <vector>

namespace velk {

/// The other processes that hold a lock for writing on one of the files, such as "process 4711
/// (name)"; those that the system shows.
std::vector<std::string> lockHoldersOf(const std::vector<std::string>& paths);

}  // namespace velk
