// How a database is opened.
#pragma once

namespace velk {

struct OdbcOptions {
  /// How long a statement may run, or wait for a lock, before it fails with -2147217871; 0 waits
  /// for ever.
  int commandTimeoutSeconds = 30;
  /// How long opening may take where the driver has such a limit; 0 waits for ever.
  int loginTimeoutSeconds = 8;
  /// Two calls are never sent as one statement.
  bool oneByOne = false;
  /// What the connection does can change nothing, where the engine has such connections.
  bool readOnly = false;
};

}  // namespace velk
