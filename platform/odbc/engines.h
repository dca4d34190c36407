// The engines that have a dialect.
#pragma once

#include <string_view>
#include <vector>

#include "platform/odbc/dialect.h"

namespace velk {

/// The dialect for what a driver calls its engine; SQL Server's for a name that is not known.
const Dialect& dialectOf(std::string_view engineName);

/// The engines that have a dialect, by their usual names.
std::vector<std::string_view> engineNames();

/// The embedded engine's dialect if the connection string names its driver; else null. Other
/// drivers tell when they are connected.
const Dialect* embeddedDialectIn(std::string_view connectionString);

}  // namespace velk
