// Waiting for the disk.
#pragma once

#include <string>

namespace velk {

/// Waits until the disk has what anybody has written to a file so far, and its name. Nothing where
/// there is none that could be written to, nor for a device.
void syncFile(const std::string& path);
/// Waits until the disk has the names in the folder of a file, where its file system can do that.
void syncFolderOf(const std::string& path);

}  // namespace velk
