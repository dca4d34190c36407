#include "platform/odbc/engines.h"

#include "base/text.h"
#include "platform/odbc/sqlite_dialect.h"

namespace velk {

const Dialect& dialectOf(std::string_view engineName) {
  // For every other name, too: its statements are sent as they are.
  static const Dialect sqlServer;
  return equalsIgnoringCase(engineName, "SQLite") ? sqliteDialect : sqlServer;
}

}  // namespace velk
