// What to change when a connection string does not open a database.
#pragma once

#include <string_view>
#include <vector>

#include "platform/database.h"

namespace velk {

/// One sentence without its full stop, by what the connection string has and by what its driver
/// said.
std::string_view connectionAdvice(std::string_view connectionString,
                                  const std::vector<Diagnostic>& said);

}  // namespace velk
