// Thrown through the screen to end a run. It is no std::exception, so that neither the error traps
// nor the screen's dispatcher take it for a failure of theirs.
#pragma once

#include <string>

namespace velk {

struct RunEnded {
  std::string why;  ///< such as "it was interrupted"
  bool connectionLost = false;
};

}  // namespace velk
