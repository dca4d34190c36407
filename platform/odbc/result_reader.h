// Reads everything that an executed statement answers into memory.
#pragma once

#include <memory>

#include "platform/memory_recordset.h"
#include "platform/odbc/odbc_session.h"

namespace velk {

/// All results of a statement that has just been executed with `executed` as its return code,
/// chained by NextRecordset. The statement's cursor is closed afterwards, whatever happens. Errors:
/// what the driver reports of the first result; an error in a later one waits in its NextRecordset.
std::shared_ptr<MemoryRecordset> readResults(OdbcSession& session, SQLHANDLE statement,
                                             SQLRETURN executed);

}  // namespace velk
