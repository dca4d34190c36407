// The journal of one import: refuses what an earlier run posted, and writes down this one.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/journal/resumption.h"
#include "apps/opnimp/journal/run_journal.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/run/journal_choice.h"

namespace velk {

class ImportJournal {
 public:
  /// Opens it; for a dry run, which writes nothing, only to be read. Raises CannotOpen.
  ImportJournal(const std::string& path, const Arguments& arguments,
                const Surroundings& surroundings, std::ostream& err);
  ImportJournal(const ImportJournal&) = delete;
  ImportJournal& operator=(const ImportJournal&) = delete;

  /// Asks which database it is, and stores an id in one that has none. First of all, and before a
  /// transaction begins, which would take the id back with it. Raises RuntimeError.
  void identify(const ImportResult& result, const OpenDatabase& database);

  /// Where the run goes on that resumes another one. Raises UsageError when there is none.
  Resumption resumption(const ImportResult& result) const;

  /// Says that the run begins and from then on listens to `report`; both outlive the object. Raises
  /// Refused for a repetition, CannotOpen when it cannot be written.
  void begin(ImportResult& result, ImportReport& report, const Recorder& recorder);
  /// What is known of a run only when it has ended, and is not in its result.
  struct Ending {
    bool completed = false;
    std::optional<long long> screenRecords;
    Changes changes = Changes::Stand;
  };
  /// Says how it ended, and of the records that it had no word of. A failure becomes the run's.
  void end(ImportResult& result, const Ending& ending);

 private:
  /// Where the recorder stood when a record began.
  struct Mark {
    std::size_t calls = 0;
    std::size_t lines = 0;
    std::size_t messages = 0;
  };

  RunStart describe(const ImportResult& result) const;
  void listen(ImportReport& report, const Recorder& recorder);
  void recordEnds(std::size_t record, const ImportReport& report, const Recorder& recorder);
  void writeEnd(const ImportResult& result, const Ending& ending);
  template <class Write>
  void orEndRun(Write write);

  const Surroundings& surroundings_;
  OpenJournal journal_;
  std::string databaseId_;
  std::optional<RunJournal> run_;  // empty: nothing is written
  Mark mark_;
  std::vector<RecordTrace> expected_;         // what is read of each record otherwise than written
  std::vector<std::optional<Outcome>> told_;  // by record
  std::size_t begun_ = 0;
  std::string failure_;
};

}  // namespace velk
