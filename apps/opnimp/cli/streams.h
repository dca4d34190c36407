// Where the program writes; tests read it from there.
#pragma once

#include <ostream>

namespace velk {

struct Streams {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;  ///< a progress line may be drawn there
};

}  // namespace velk
