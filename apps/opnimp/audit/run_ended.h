// Thrown through the screen to end a run. It is no std::exception, so that neither the error traps
// nor the screen's dispatcher take it for a failure of theirs.
#pragma once

namespace velk {

struct RunEnded {
  enum class Why { Interrupted, ConnectionLost, JournalFailed };
  Why why;
};

}  // namespace velk
