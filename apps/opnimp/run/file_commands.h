// The commands that help with files before an import: they open no database.
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"

namespace velk {

/// Tells the kinds of file, or of one its columns. All of these raise UsageError and CannotOpen.
ExitStatus tellKinds(const Arguments& arguments, const Streams& streams);
/// Writes a file of a kind with its titles and an example; a workbook with what each column may be
/// on a second sheet.
ExitStatus writeTemplate(const Arguments& arguments, const Streams& streams);

}  // namespace velk
