// The program as a function, so that tests can run it in their own process.
#pragma once

#include <span>
#include <string>

#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// Runs the command line that follows the program's name; returns the exit status.
int runOpnimp(std::span<const std::string> args, Streams& streams,
              const Surroundings& surroundings = realSurroundings());

}  // namespace velk
