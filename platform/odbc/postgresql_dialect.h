// PostgreSQL, through its own driver.
#pragma once

#include "platform/odbc/dialect.h"

namespace velk {

extern const Dialect postgresqlDialect;

}  // namespace velk
