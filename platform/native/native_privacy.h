// Who may read a file.
#pragma once

#include <string>

namespace velk {

/// Whether others than the file's owner may; those who administer the machine do not count.
bool othersMayRead(const std::string& path);
/// Takes all rights to it from them. Where the file system has no such rights they are not missed.
void makePrivate(const std::string& path);
/// What a user types so that they may not.
std::string commandToKeepPrivate(const std::string& path);

}  // namespace velk
