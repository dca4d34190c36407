// What the database's catalogue says of a procedure: how it is called, and what a call that has
// failed can have done.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/odbc/odbc_session.h"

namespace velk {

/// A query of the dialect about a procedure, with the name as a literal in the place of each mark.
std::string withProcedure(std::string_view query, std::string_view procedure);

/// True if the catalogue shows that the call cannot have begun: the procedure is not there, the
/// user has no right to run it, or it takes fewer parameters than were passed. The call's own error
/// cannot show that, because a procedure that calls another one fails with the same. False where
/// the catalogue does not answer. The session's diagnostics stay as they are.
bool cannotHaveRun(const OdbcSession& session, std::string_view procedure,
                   std::size_t parameterCount);

/// What the catalogue tells of a procedure's parameters; empty where it does not.
std::vector<CatalogueParameter> catalogueParameters(const OdbcSession& session,
                                                    std::string_view procedure);

/// True if a call that the engine refuses has changed nothing, as the dialect or, by its query, the
/// catalogue says.
bool hasAtomicCalls(const OdbcSession& session, std::string_view procedure);

/// What stands before the procedure's name in a call. Errors: what the driver reports.
std::string callBefore(OdbcSession& session, std::string_view procedure);

}  // namespace velk
