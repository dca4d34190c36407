// What one import of a file has to do with the journal: it is refused if an earlier run posted the
// same, and written down as a run of its own.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/opnimp/audit/import_report.h"
#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/journal/run_journal.h"
#include "apps/opnimp/report/import_result.h"
#include "apps/opnimp/run/import_journal.h"

namespace velk {

class FileJournal {
 public:
  /// Describes the run that is about to begin; `undated` as HashBasis has it. Raises Refused for a
  /// repetition.
  FileJournal(ImportJournal& journal, ImportResult& result, const Surroundings& surroundings,
              const std::function<std::optional<Date>()>& undated);
  FileJournal(const FileJournal&) = delete;
  FileJournal& operator=(const FileJournal&) = delete;

  /// What the records are known again by, until the run begins.
  const std::vector<JournaledRecord>& records() const { return start_.records; }

  /// Called when a record has ended, with what was said and seen of it; of a dry run, too.
  std::function<void(std::size_t record, const RecordTrace& trace)> onEnd;

  /// Says that the run begins and from then on listens to `report`; both outlive the object. Raises
  /// CannotOpen when it cannot be written. Of a dry run nothing is.
  void begin(ImportResult& result, ImportReport& report, const Recorder& recorder);
  /// What was said of the records from the first one on counts no more; they go on behind the last
  /// one. If none does, nobody knows what became of these.
  void beginAgain(std::size_t first, std::size_t last);
  /// Says that the run goes on at another host.
  void hostChanges(const HostChange& change);
  /// Says what the server that is posted to has for a history; nothing if it is empty.
  void serverHas(const std::string& history);
  /// Says that the transaction around the run may be kept from now on; false if that could not be
  /// written, which ends the run.
  bool mayBeKept();
  /// Says, after the run of that number has ended, that what its records from that one on have
  /// posted may be lost.
  void doubtFrom(std::uint64_t run, std::size_t record);
  /// What is known of a run only when it has ended, and is not in its result.
  struct Ending {
    bool completed = false;
    std::optional<long long> screenRecords;
    Changes changes = Changes::Stand;
  };
  /// Says how it ended, and of the records that it had no word of. A failure becomes the run's.
  /// Nothing if the run did not begin.
  void end(ImportResult& result, const Ending& ending);

 private:
  /// Where the recorder stood when a record began.
  struct Mark {
    std::size_t calls = 0;
    std::size_t lines = 0;
    std::size_t messages = 0;
  };

  void writeBegin(ImportResult& result);
  void listen(ImportReport& report, const Recorder& recorder);
  void recordEnds(std::size_t record, const ImportReport& report, const Recorder& recorder);
  void writeEnd(const ImportResult& result, const Ending& ending);
  template <class Write>
  void orEndRun(Write write);

  ImportJournal& journal_;
  RunStart start_;
  std::optional<RunJournal> run_;  // empty: nothing is written
  Mark mark_;
  std::vector<const Misreading*> readings_;   // in the order of their records
  RecordTrace trace_;                         // of the record that ends; its lists keep their room
  std::vector<std::optional<Outcome>> told_;  // by record
  std::size_t begun_ = 0;
  std::string failure_;
};

}  // namespace velk
