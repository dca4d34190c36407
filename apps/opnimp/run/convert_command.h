// The command "convert".
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"

namespace velk {

/// Writes the file that the screens read. Raises CannotOpen and UsageError.
ExitStatus runConvert(const Arguments& arguments, const Streams& streams);

}  // namespace velk
