// What a driver reports about a failure, and the one place where it becomes a runtime error.
#pragma once

#include <vector>

#include "base/errors.h"
#include "platform/database.h"
#include "platform/odbc/odbc_api.h"

namespace velk {

/// All records of a handle, first record first. A null handle has none.
std::vector<Diagnostic> readDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle);

/// The error that the data access library would raise: the number by the first record's SQLSTATE,
/// the description its message without the leading "[...]" names of layers. No record at all is
/// the provider's general failure.
RuntimeError toRuntimeError(const std::vector<Diagnostic>& diagnostics);

/// True if a record reports that the connection itself has failed (class 08), or a cursor that is
/// open although every one was closed (class 24).
bool tellsConnectionLost(const std::vector<Diagnostic>& diagnostics);

}  // namespace velk
