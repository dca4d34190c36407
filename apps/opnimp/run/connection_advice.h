// What to change when a connection string does not open a database.
#pragma once

#include <string>

#include "base/errors.h"

namespace velk {

/// One sentence, by what the connection string has and by what the driver reported.
std::string adviceOn(const std::string& connectionString, const RuntimeError& error);

}  // namespace velk
