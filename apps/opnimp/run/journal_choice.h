// Which journal a command works on.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "apps/opnimp/journal/run_index.h"
#include "apps/opnimp/report/events.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// The path that --journal names, or the user's own journal. Raises CannotOpen when there is no
/// folder for that.
std::string chooseJournal(const std::optional<std::string>& option,
                          const Surroundings& surroundings);

struct OpenJournal {
  std::string path;
  std::unique_ptr<KeptFile> file;  ///< null: opened for reading, and there is none yet
  RunIndex index;
};

/// Raises CannotOpen for a journal that is damaged.
void requireWhole(const OpenJournal& journal);

/// Opens it and reads what it tells. A journal that is damaged, or that another run writes, is not
/// opened for writing. Raises CannotOpen; a torn end is told.
OpenJournal openJournal(const std::string& path, KeptFor use, const Surroundings& surroundings,
                        Events& events);

}  // namespace velk
