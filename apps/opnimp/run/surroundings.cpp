#include "apps/opnimp/run/surroundings.h"

#include "platform/native/native_clock.h"
#include "platform/native/native_state.h"
#include "platform/native/native_user.h"
#include "platform/native/pipe_reading.h"
#include "platform/odbc/odbc_connection.h"

namespace velk {

Surroundings realSurroundings() {
  return {.interrupted = [] { return false; },
          .clock = localNow,
          .user = userName,
          .input = readStandardInput,
          .database = environmentVariable("OPNIMP_DATABASE"),
          .openDatabase =
              [](const std::string& connectionString, const OdbcOptions& options) {
                return openOdbc(connectionString, options);
              },
          .stateFolder = stateFolder(),
          .settingsFolder = settingsFolder(),
          .machineStart = machineStart()};
}

}  // namespace velk
