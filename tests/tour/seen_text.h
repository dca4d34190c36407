// Whether what is shown is shown in full.
#pragma once

#include <string>

#include "tests/tour/seen_windows.h"

namespace velk {

/// Compares the text of every control, header and item of the host's window and of the screens with
/// its room there, and the pixels of headers with those of the text. Answers what is cut; empty if
/// nothing is. Not asked are the cells of a file (a column's width is the screens' and the user's
/// own), the path in a file's box, which scrolls, and the system's own dialogs.
std::string cutTexts(const SeenWindows& host, int dotsPerInch);

}  // namespace velk
