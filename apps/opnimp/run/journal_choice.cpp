#include "apps/opnimp/run/journal_choice.h"

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/file_bytes.h"
#include "base/errors.h"
#include "platform/files.h"
#include "platform/native/native_kept_file.h"
#include "platform/native/native_state.h"

namespace velk {

namespace {

[[noreturn]] void cannotOpen(const std::string& path, const RuntimeError& error, KeptFor use) {
  if (error.is(ErrorNumber::InvalidFileFormat)) {
    throw CannotOpen("the file " + path +
                     " is no journal, or one of another program; choose "
                     "another with --journal");
  }
  if (error.is(ErrorNumber::PermissionDenied) && use == KeptFor::Writing) {
    throw CannotOpen("the journal " + path +
                     " is in use by another run, or may not be written: "
                     "wait until that run ends, or choose another with --journal");
  }
  throw CannotOpen("the journal " + path + " could not be " +
                   (use == KeptFor::Writing ? "written: " : "read: ") + fileErrorText(path, error) +
                   ". Check the path and its permissions, or choose another with --journal");
}

}  // namespace

void requireWhole(const OpenJournal& journal) {
  const JournalEnd& end = journal.index.end;
  if (!end.damaged) return;
  throw CannotOpen("the journal " + journal.path + " is damaged: what follows byte " +
                   std::to_string(end.whole) +
                   " cannot be read. Move it away; `opnimp runs "
                   "--journal` with its new name still shows the runs before the damage");
}

namespace {

void tellTorn(const OpenJournal& journal, KeptFor use, Events& events) {
  const std::uint64_t torn = journal.index.end.torn;
  if (torn == 0 || (use == KeptFor::Reading && journal.index.isRunning)) return;
  events.notice("the last " + counted(torn, "byte", "bytes") + " of the journal " + journal.path +
                (journal.index.end.damaged
                     ? " cannot be read: it is damaged."
                     : " are an entry that was cut off, and are passed over."));
}

}  // namespace

std::string chooseJournal(const std::optional<std::string>& option,
                          const Surroundings& surroundings) {
  if (option) return *option;
  if (surroundings.stateFolder.empty()) {
    throw CannotOpen("there is no folder for the journal: " + std::string(noStateFolder) +
                     ". Choose a place with --journal");
  }
  return surroundings.stateFolder + pathSeparator + "opnimp" + pathSeparator + "journal";
}

OpenJournal openJournal(const std::string& path, KeptFor use, const Surroundings& surroundings,
                        Events& events) {
  OpenJournal journal{path, nullptr, {}};
  try {
    journal.file = openKept(path, use);
    journal.index = readIndex(*journal.file, surroundings.machineStart);
  } catch (const RuntimeError& error) {
    const bool missing = error.is(ErrorNumber::FileNotFound) || error.is(ErrorNumber::PathNotFound);
    if (!missing || use == KeptFor::Writing) cannotOpen(path, error, use);
  }
  if (use == KeptFor::Writing) requireWhole(journal);
  tellTorn(journal, use, events);
  return journal;
}

}  // namespace velk
