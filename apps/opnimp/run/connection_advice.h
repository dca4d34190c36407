// What to change when a connection string does not open a database.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"

namespace velk {

/// One sentence without its full stop, by what the connection string has and by what its driver
/// said.
std::string connectionAdvice(std::string_view connectionString,
                             const std::vector<Diagnostic>& said);

/// The same of the embedded database; empty if its driver is installed.
std::string_view embeddedAdvice(const std::vector<Diagnostic>& said);

}  // namespace velk
