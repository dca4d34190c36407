// The commands that drive a screen. Each reports on standard output.
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// Posts a file's records. Raises UsageError and CannotOpen.
ExitStatus runImport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings);

/// Shows a file's columns, what maps to what, the first rows and the warnings. Opens no database
/// and writes no file. Raises CannotOpen.
ExitStatus runPreview(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings);

/// Writes the salesmen to a workbook, with what they may be changed to. Raises UsageError and
/// CannotOpen.
ExitStatus runExport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings);

}  // namespace velk
