// The host's windows at a display's dots per inch, and what it says when it cannot work.
#pragma once

#include "tests/tour/tour_imports.h"

namespace velk {

/// Opens every screen by keyboard. Error 5, naming what is cut or not as large as it should be.
void checkLook(const Places& places, int dotsPerInch);

/// Starts the host with what it cannot use. Error 5 when no message box names the file.
void checkErrors(const Places& places);

}  // namespace velk
