// The command "preview".
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// Shows a file's columns, what maps to what, the first rows and the warnings. Opens no database
/// and writes no file. Raises CannotOpen.
ExitStatus runPreview(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings);

}  // namespace velk
