// What the program says about itself.
#pragma once

#include <string>

namespace velk {

std::string helpText();
std::string versionText();

}  // namespace velk
