// Reads the command line.
#pragma once

#include <span>
#include <string>

#include "apps/opnimp/cli/arguments.h"

namespace velk {

/// Reads the arguments that follow the program's name; raises UsageError. The command comes first;
/// an option's value follows it as the next argument or after "="; "--" ends the options.
Arguments parseArguments(std::span<const std::string> args);

/// True when the arguments ask for JSON, even if they make no sense otherwise.
bool asksForJson(std::span<const std::string> args);
/// The same of what is told on standard error.
bool asksForJsonLog(std::span<const std::string> args);

}  // namespace velk
