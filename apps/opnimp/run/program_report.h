// What the program tells of itself.
#pragma once

#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"

namespace velk {

/// A line each for version, commit and the engines that have a dialect.
ExitStatus tellVersion(const Streams& streams);

}  // namespace velk
