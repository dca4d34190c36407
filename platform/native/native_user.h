// Who runs the program.
#pragma once

#include <string>

namespace velk {

/// The name of the user as whom the program acts; the number where there is no name.
std::string userName();

}  // namespace velk
