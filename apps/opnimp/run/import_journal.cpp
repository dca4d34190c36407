#include "apps/opnimp/run/import_journal.h"

#include <utility>

#include "apps/opnimp/journal/record_hash.h"

namespace velk {

ImportJournal::ImportJournal(const std::string& path, const Arguments& arguments,
                             const Surroundings& surroundings, Events& events)
    : isRead_(arguments.dryRun),
      journal_(
          openJournal(path, isRead_ ? KeptFor::Reading : KeptFor::Writing, surroundings, events)),
      nextRun_(journal_.index.runs.empty() ? 1 : journal_.index.runs.back().start.number + 1) {}

// What cannot be told is known by how it is named.
void ImportJournal::identify(OwnConnection& database, const std::string& shown) {
  databaseId_ = database.identity(!isRead_);
  if (databaseId_.empty()) databaseId_ = shown;
  databaseFile_ = database.file();
}

Resumption ImportJournal::resumption(const ImportResult& result) const {
  return findResumption(
      journal_.index, {result.arguments.kind->name, databaseId_, hashOf(result.input->fileBytes()),
                       assumedValue(result.input->conversion().assumptions, sheetAssumption)});
}

JournalFile& ImportJournal::file() {
  if (!file_) file_.emplace(std::move(journal_.file), journal_.index.end);
  return *file_;
}

}  // namespace velk
