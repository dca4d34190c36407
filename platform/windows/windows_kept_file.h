// Kept files through Win32, and the folder that they are in.
#pragma once

#include <memory>
#include <string>

#include "platform/kept_file.h"

namespace velk {

/// For writing: error 70 while somebody else has it open so.
std::unique_ptr<KeptFile> openKept(const std::string& path, KeptFor use);

/// The user's folder for what programs remember between runs, %LOCALAPPDATA%; empty when it is not
/// set.
std::string stateFolder();

}  // namespace velk
