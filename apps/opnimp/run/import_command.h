// The command "import".
#pragma once

#include <functional>
#include <string>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"
#include "apps/opnimp/report/files_result.h"
#include "apps/opnimp/run/surroundings.h"
#include "mapping/import_screen.h"

namespace velk {

/// Posts the records of each file, one file after the other, and reports on standard output. Posts
/// nothing of any if one is refused. Raises UsageError and CannotOpen.
ExitStatus runImport(const Arguments& arguments, const Streams& streams,
                     const Surroundings& surroundings);

class Catalogue;

/// What an import would come to without a database.
struct Foresight {
  /// Gets the screen when it shows a file and its mapping, also where it refuses a mapping.
  std::function<void(const std::string& file, const ImportScreen&)> viewed;
  /// Gets what the import came to; it lasts as long as the call.
  std::function<void(const FilesResult&)> ended;
  /// Of the database that is meant; null: none is.
  Catalogue* catalogue = nullptr;
};

/// A dry run that shows no message of the import and writes no file but the profile.
ExitStatus foreseeImport(const Arguments& arguments, const Streams& streams,
                         const Surroundings& surroundings, const Foresight& foresight);

}  // namespace velk
