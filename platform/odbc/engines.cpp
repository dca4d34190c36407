#include "platform/odbc/engines.h"

#include <array>

#include "base/text.h"
#include "platform/odbc/sqlite_dialect.h"

namespace velk {

namespace {

// Of the driver's library for its network protocol, which reports a lost connection so: as a mere
// warning, or under the general state.
constexpr auto lostConnections = std::to_array<NativeError>({
    {20004, "08S01", "Read from the server failed"},
    {20006, "08S01", "Write to the server failed"},
    {20017, "08S01", "Unexpected EOF"},
    {20047, "08S01", "dead"},
});

}  // namespace

const Dialect& dialectOf(std::string_view engineName) {
  // For every other name, too: its statements are sent as they are.
  static constexpr Dialect sqlServer{.errors = lostConnections};
  return equalsIgnoringCase(engineName, "SQLite") ? sqliteDialect : sqlServer;
}

}  // namespace velk
