// The embedded database's engine, SQLite, and its driver.
#pragma once

#include "platform/odbc/dialect.h"

namespace velk {

extern const Dialect sqliteDialect;

}  // namespace velk
