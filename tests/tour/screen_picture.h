// Pictures of what this program shows.
#pragma once

#include <string>

#include "tests/tour/png_writer.h"

namespace velk {

/// The part of the display that this program's windows cover, as it is now.
Picture24 displayedNow();
/// The same once it is all painted and stands still.
Picture24 takePicture();

/// Error 75 when the file cannot be written.
void savePicture(const Picture24& picture, const std::string& path);

}  // namespace velk
