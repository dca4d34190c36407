// Which program this is; the build writes the source.
#pragma once

#include <string_view>

namespace velk {

/// Such as "1.2.3".
extern const std::string_view programVersion;
/// Twelve digits, with "-modified" behind them if files of the tree were changed since; "unknown"
/// if it was not built in a repository.
extern const std::string_view programCommit;

}  // namespace velk
