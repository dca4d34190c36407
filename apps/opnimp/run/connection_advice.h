// What to change when a database cannot be opened.
#pragma once

#include <string>

#include "apps/opnimp/run/database_choice.h"
#include "base/errors.h"

namespace velk {

/// One sentence, by what the connection string has and by what the driver reported.
std::string adviceOn(const DatabaseChoice& choice, const RuntimeError& error);

}  // namespace velk
