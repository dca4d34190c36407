// How a database is opened.
#pragma once

namespace velk {

struct OdbcOptions {
  /// How long a statement may run, or wait for a lock, before it fails with -2147217871; 0 waits
  /// for ever.
  int commandTimeoutSeconds = 30;
  /// How much of that it may wait for locks, where the engine has such a limit; 0: all of it.
  int lockTimeoutSeconds = 0;
  /// It fails at once instead, or nearly so.
  bool waitsForLocks = true;
  /// How long opening may take where the driver has such a limit; 0 waits for ever.
  int loginTimeoutSeconds = 8;
  /// Two calls are never sent as one statement.
  bool oneByOne = false;
  /// The engine itself refuses what would change something, where it can.
  bool readOnly = false;
};

}  // namespace velk
