// What the program does, one function a command. They raise UsageError and CannotOpen.
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"

namespace velk {

/// Posts a file's records and reports on standard output.
ExitStatus runImport(const Arguments& arguments, const Streams& streams, const Machine& machine);

/// Shows a file's columns, what maps to what, the first rows and the warnings. Touches no database
/// and writes no file.
ExitStatus runPreview(const Arguments& arguments, const Streams& streams, const Machine& machine);

/// Writes the salesmen to a workbook, with what they may be changed to.
ExitStatus runExport(const Arguments& arguments, const Streams& streams, const Machine& machine);

/// Makes the sample company's database.
ExitStatus runDemoDatabase(const Arguments& arguments, const Streams& streams);

}  // namespace velk
