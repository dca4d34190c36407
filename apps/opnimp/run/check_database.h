// The command "check-database".
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// Says whether imports can work in the database, on a connection that changes nothing. Raises
/// CannotOpen and UsageError.
ExitStatus checkDatabase(const Arguments& arguments, const Streams& streams,
                         const Surroundings& surroundings);

}  // namespace velk
