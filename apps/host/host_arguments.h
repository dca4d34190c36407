// The host's command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velk {

inline constexpr std::string_view hostHelp =
    "opnimp_host [options]: a host application for the opening import\n"
    "\n"
    "  --database STRING   an ODBC connection string, or the path of an embedded database\n"
    "                      (default: opnimp.db in the current folder, made with the sample\n"
    "                      company on first use)\n"
    "  --own-ado           use this program's ADO objects instead of the machine's; they are\n"
    "                      used in any case for an embedded database and under Wine\n"
    "  --help              this text\n";

struct HostArguments {
  std::optional<std::string> database;
  bool ownAdo = false;
  bool help = false;
};

/// Error 5, saying what is wrong, for a command line that cannot be understood.
HostArguments readHostArguments(const std::vector<std::string>& words);

}  // namespace velk
