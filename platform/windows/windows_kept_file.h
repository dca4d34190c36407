// Kept files through Win32.
#pragma once

#include <memory>
#include <string>

#include "platform/kept_file.h"

namespace velk {

/// For writing: error 70 while somebody else has it open so.
std::unique_ptr<KeptFile> openKept(const std::string& path, KeptFor use);

}  // namespace velk
