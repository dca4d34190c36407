#include "platform/odbc/engines.h"

#include "base/text.h"
#include "platform/odbc/sqlite_dialect.h"

namespace velk {

const Dialect& dialectOf(std::string_view engineName) {
  static const Dialect sqlServer;
  struct Engine {
    std::string_view name;
    const Dialect& dialect;
  };
  static const Engine engines[] = {
      {"SQLite", sqliteDialect},
  };
  for (const Engine& engine : engines) {
    if (equalsIgnoringCase(engineName, engine.name)) return engine.dialect;
  }
  return sqlServer;
}

}  // namespace velk
