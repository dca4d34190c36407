// The command "export".
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// Writes the salesmen to a workbook, with what they may be changed to. Raises UsageError and
/// CannotOpen.
ExitStatus runExport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings);

}  // namespace velk
