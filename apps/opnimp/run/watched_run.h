// Keeps a run that waits for a database from keeping the user waiting.
#pragma once

#include <functional>
#include <string>

#include "apps/opnimp/audit/run_gate.h"

namespace velk {

struct WatchedRun {
  std::function<void()> work;  ///< what it uses has to live as long as it
  /// Why the work is to end now, empty if it is not; asked from another thread than the work's.
  std::function<std::string()> whyEnd;
  std::function<void()> cancel;  ///< ends the statement that is running; may be empty
  RunGate& gate;
  std::function<void()> look;  ///< called many times a second while it runs; must not wait
};

/// Runs the work in a thread of its own and waits for it. When it is to end, it may do so by
/// itself, then its gate is closed and its statement cancelled. False if even that did not end it
/// within two seconds: it stands within a call and never leaves it. What the work throws is thrown
/// here.
bool runWatched(const WatchedRun& run);

}  // namespace velk
