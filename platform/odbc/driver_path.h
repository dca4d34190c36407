// Paths of files as the database's driver knows them.
#pragma once

#include <string>
#include <string_view>

namespace velk {

/// The path that the driver opens for a file that this program calls `path`: the same, but a full
/// path of the underlying system when Wine hands the call on to a driver of that system.
std::string driverPath(std::string_view path);

/// The name of the embedded database's driver, as its maker or, on Linux, the distribution has it.
std::string_view embeddedDriver();

}  // namespace velk
