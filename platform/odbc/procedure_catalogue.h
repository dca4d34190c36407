// What the database's catalogue says of a procedure whose call has failed.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/odbc/odbc_session.h"

namespace velk {

/// True if the catalogue shows that the call cannot have begun: the procedure is not there, the
/// user has no right to run it, or it takes fewer parameters than were passed. The call's own error
/// cannot show that, because a procedure that calls another one fails with the same. False where
/// the catalogue does not answer. The session's diagnostics stay as they are.
bool cannotHaveRun(const OdbcSession& session, std::string_view procedure,
                   std::size_t parameterCount);

}  // namespace velk
