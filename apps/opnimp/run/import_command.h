// The command "import".
#pragma once

#include <functional>
#include <memory>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/run/surroundings.h"
#include "mapping/import_screen.h"

namespace velk {

/// Posts a file's records and reports on standard output. Raises UsageError and CannotOpen.
ExitStatus runImport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings);

/// What an import would come to without a database.
struct Foresight {
  /// On it every look-up has to pass.
  std::shared_ptr<Connection> connection;
  /// Gets the screen when it shows the file and its mapping, also where it refuses a mapping.
  std::function<void(const ImportScreen&)> viewed;
  /// Gets what the import came to; it lasts as long as the call.
  std::function<void(const ImportResult&)> ended;
};

/// A dry run that shows no message of the import and writes no file.
void foreseeImport(const Arguments& arguments, const Streams& streams,
                   const Surroundings& surroundings, const Foresight& foresight);

}  // namespace velk
