// The commands that tell of earlier runs: they read the journal, and open no database.
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// Lists all runs. All of these raise UsageError and CannotOpen.
ExitStatus runRuns(const Arguments& arguments, const Streams& streams,
                   const Surroundings& surroundings);
/// Shows a run's report as it was, and answers the status that it had.
ExitStatus runReport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings);
/// Writes the opposite documents of what a run posted.
ExitStatus runReversal(const Arguments& arguments, const Streams& streams,
                       const Surroundings& surroundings);
/// Writes the files of --rejects for a run.
ExitStatus runRejects(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings);

}  // namespace velk
