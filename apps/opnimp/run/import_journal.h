// The journal as one call of the import uses it: opened once, for the runs of all its files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/journal/journal_file.h"
#include "apps/opnimp/journal/resumption.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/run/journal_choice.h"
#include "platform/database.h"

namespace velk {

class ImportJournal {
 public:
  /// Opens it; for a dry run, which writes nothing, only to be read. Raises CannotOpen.
  ImportJournal(const std::string& path, const Arguments& arguments,
                const Surroundings& surroundings, Events& events);
  ImportJournal(const ImportJournal&) = delete;
  ImportJournal& operator=(const ImportJournal&) = delete;

  /// Asks which database it is, and stores an id in one that has none, unless nothing may be
  /// written. First of all, and before a transaction begins, which would take the id back with it.
  /// `shown` is how the database is named. Raises RuntimeError.
  void identify(OwnConnection& database, const std::string& shown);

  const std::string& path() const { return journal_.path; }
  /// As it was before the call.
  const RunIndex& index() const { return journal_.index; }
  const std::string& databaseId() const { return databaseId_; }
  /// The file of the database, if it is an embedded one.
  const std::string& databaseFile() const { return databaseFile_; }
  /// Where a run of this file would go on.
  Resumption resumption(const ImportResult& result) const;

  std::uint64_t nextRun() { return nextRun_++; }
  /// To add a run to, the last one having ended. Raises RuntimeError.
  JournalFile& file();

 private:
  bool isRead_;  // and not written
  OpenJournal journal_;
  std::string databaseId_;
  std::string databaseFile_;
  std::uint64_t nextRun_;
  std::optional<JournalFile> file_;
};

}  // namespace velk
