// The command "import".
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// Posts a file's records and reports on standard output. Raises UsageError and CannotOpen.
ExitStatus runImport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings);

}  // namespace velk
