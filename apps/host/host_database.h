// The database that the host opens and hands to the component.
#pragma once

#include <ole2.h>

#include <ado_com.h>

#include <optional>
#include <string>

#include "apps/database/company_database.h"
#include "platform/windows/com_pointer.h"

namespace velk {

/// The database that --database names, or the default one, made with the sample company when it is
/// not there. Error 53 for a named file that is not there; else what making the sample company
/// raises.
CompanyDatabase chooseHostDatabase(const std::optional<std::string>& option);

/// What a user knows it by: the full path of an embedded database's file. A connection string is
/// not shown, because it may hold a password.
std::string shownName(const CompanyDatabase& database);

/// Opens it, with this program's ADO objects or the machine's, which then are also the ones that
/// the component's commands are made of. Errors name the database and what to do.
ComPtr<_Connection> openHostDatabase(const CompanyDatabase& database, bool ownAdo);

/// True when this program's ADO objects have to be used for a database: for an embedded one,
/// because the machine's know nothing of its procedures, and under Wine, whose have no commands.
bool needsOwnAdo(const CompanyDatabase& database);

}  // namespace velk
