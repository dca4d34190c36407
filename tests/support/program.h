// The program as a process of its own, whose calls of the system can be made to fail.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/runner.h"

namespace velk {

/// Which call fails, and how: tests/faults/system_faults.cpp. Empty: the program runs undisturbed.
using SystemFaults = std::map<std::string, std::string>;

/// Its state is in `folder`, as are "out" and "err" for what it writes. A status below 0 is the
/// signal that ended it.
Ran runProgram(const TemporaryFolder& folder, const std::vector<std::string>& args,
               const SystemFaults& faults = {},
               std::optional<std::chrono::microseconds> killedAfter = {});

/// The export of the folder's "company.db" to its "salesmen.xls".
std::vector<std::string> exportCommand(const TemporaryFolder& folder);

/// Whether all cases of a systematic test are to be tried, and not only some.
bool triesAll();

}  // namespace velk
