// The database that the host opens and hands to the component.
#pragma once

#include <ole2.h>

#include <ado_com.h>

#include <optional>
#include <string>

#include "platform/windows/com_pointer.h"

namespace velk {

struct HostDatabase {
  std::string connectionString;  ///< of an ODBC driver
  bool embedded;                 ///< a file; the machine's ADO knows nothing of its procedures
};

/// What --database means: the path of an embedded database, or, where it holds "=" and no file is
/// so called, an ODBC connection string. Without it, opnimp.db in the current folder, made with the
/// sample company when it is not there. Error 53 for a named file that is not there; else what
/// making the sample company raises.
HostDatabase chooseHostDatabase(const std::optional<std::string>& option);

/// A new embedded database with the sample company. Error 55 when there is such a file.
HostDatabase newSampleCompany(const std::string& path);

/// Opens it, with this program's ADO objects or the machine's, which then are also the ones that
/// the component's commands are made of.
ComPtr<_Connection> openHostDatabase(const HostDatabase& database, bool ownAdo);

/// True when this program's ADO objects have to be used for a database.
bool needsOwnAdo(const HostDatabase& database);

}  // namespace velk
