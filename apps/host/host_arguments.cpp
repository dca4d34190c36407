#include "apps/host/host_arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>

#include "base/errors.h"

namespace velk {

namespace {

[[noreturn]] void refuse(const std::string& why) {
  throw RuntimeError(ErrorNumber::InvalidProcedureCall,
                     why + "\n\nSee opnimp_host --help for the options.");
}

}  // namespace

HostArguments readHostArguments(std::vector<std::string> words) {
  HostArguments arguments;
  CLI::App program("a host application for the opening import", "opnimp_host");
  program.allow_windows_style_options(false);  // a path may begin with a slash
  program.allow_extras();                      // to refuse them in our own words
  program
      .add_option("--database", arguments.database,
                  "an ODBC connection string, or the path of an embedded database\n"
                  "(default: opnimp.db beside this program, made with the sample\n"
                  "company on first use)")
      ->type_name("STRING");
  program.add_flag("--own-ado", arguments.ownAdo,
                   "use this program's ADO objects instead of the machine's; they are\n"
                   "used in any case for an embedded database and under Wine");
  try {
    std::ranges::reverse(words);  // the library takes the last word first
    program.parse(std::move(words));
  } catch (const CLI::CallForHelp&) {
    arguments.help = program.help();
  } catch (const CLI::ParseError& error) {
    refuse(error.what());
  }
  if (const auto unknown = program.remaining(); !unknown.empty()) {
    refuse("unknown option " + unknown.front());
  }
  return arguments;
}

}  // namespace velk
