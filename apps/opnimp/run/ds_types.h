// The DS types of the database.
#pragma once

#include <string>
#include <vector>

#include "platform/database.h"

namespace velk {

/// Those that an import may give to a salesman: active, of the operational category group in force,
/// and default values. None when the database does not tell.
std::vector<std::string> allowedDsTypes(Connection& connection);

}  // namespace velk
