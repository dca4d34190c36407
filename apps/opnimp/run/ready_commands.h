// Commands that a user can run as they are printed.
#pragma once

#include <string>
#include <vector>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/report/import_result.h"

namespace velk {

/// The command that was given, with each of the choices in turn: options as a shell takes them.
/// Passwords are "***" in it. One that the machine's shells might not take so is left out.
std::vector<std::string> readyCommands(const Arguments& arguments,
                                       const std::vector<std::string>& choices);

/// The --map options of the suggestions, as a shell takes them; empty if there are none, or
/// one is in doubt or no word for the machine's shells.
std::string mapChoice(const std::vector<TitleSuggestion>& suggestions);

/// Those that may mend what a refused import was refused for.
std::vector<std::string> readyCommands(const ImportResult& result);

}  // namespace velk
