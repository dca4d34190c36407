// Who holds the locks that a connection waits for.
#pragma once

#include <string>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/run/database_choice.h"
#include "apps/opnimp/run/lock_watch.h"

namespace velk {

/// What asks for it: of an embedded database the system, of a server another connection. That is
/// opened by the program anew, because driver managers let nobody into a driver as long as one of
/// its connections of the same process waits. Empty where nobody can tell.
LockQuestion lockHoldersQuestion(const DatabaseChoice& database, const std::string& session,
                                 const std::string& program);

/// The command that the program runs of itself: a line for each; status 2 if a right is missing,
/// which is the first line then. Raises CannotOpen.
ExitStatus tellLockHolders(const Arguments& arguments, const Streams& streams,
                           const Surroundings& surroundings);

}  // namespace velk
