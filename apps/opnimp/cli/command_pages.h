// What shells and manuals know of the program, made from the definition of its options.
#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace velk {

/// The manual page of the program and all of its commands, for man(1).
std::string manualPage(const CLI::App& app, std::string_view version);

/// A script by which a shell completes commands, options and kinds: "bash", "zsh" or "fish".
std::string completionScript(const CLI::App& app, std::string_view shell);

}  // namespace velk
